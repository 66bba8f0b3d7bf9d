#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

#include <chrono>

namespace quorvane {

/// One question to a service on a bus: whom, what, how long its answer is waited for, and whether
/// the service is to be started for it. `BusCalls` asks it. Any thread.
struct BusCall {
    /// What every service gets unless there is a reason for more or less.
    static constexpr std::chrono::milliseconds usualLimit = std::chrono::seconds(25);

    /// For an answer that is worth having however late. The bus itself answers when the service
    /// leaves, so this too has an end unless the service hangs.
    static constexpr std::chrono::milliseconds noLimit = std::chrono::milliseconds::max();

    enum class Autostart { Yes, No };

    QString service; ///< a well-known name, or the unique one of a particular owner
    QString path;
    QString interface;
    QString method;
    QVariantList arguments;
    std::chrono::milliseconds limit; ///< 1 ms at least; `noLimit`: none
    Autostart autostart = Autostart::Yes;

    /// A question to the bus itself, such as "GetNameOwner".
    [[nodiscard]] static BusCall toBus(const QString& method, const QVariantList& arguments,
                                       std::chrono::milliseconds limit);

    [[nodiscard]] QDBusMessage message() const;

    /// `limit` as QtDBus counts it: whole milliseconds, the largest number for none.
    [[nodiscard]] int timeout() const;
};

} // namespace quorvane
