#pragma once

#include "platform/Result.h"

#include <QDBusMessage>
#include <QLatin1String>
#include <QString>
#include <QVariant>

namespace quorvane {

/// What came of a question over D-Bus, and above all from whom: an error that the bus gives says
/// nothing about what the service thinks. Any thread.
class BusAnswer {
  public:
    enum class Kind {
        Reply,      ///< the service's own, with values
        Refused,    ///< the service's own, an error
        Unanswered, ///< it was asked, but has left before it answered, or not answered in time
        Absent      ///< nobody was asked: no such service, none that could be started, or no bus
    };

    /// Counts as `Unanswered` until there is something better.
    BusAnswer() = default;

    /// A reply, or the error that stands for it.
    explicit BusAnswer(const QDBusMessage& message);

    [[nodiscard]] Kind kind() const { return kind_; }

    [[nodiscard]] bool isReply() const { return kind_ == Kind::Reply; }

    /// A reply with values of just these types, as D-Bus writes them: "u", "as".
    [[nodiscard]] bool isReplyOf(QLatin1String signature) const;

    /// Whether it was the service that answered, with values or an error. Else it was the bus, or
    /// this program's own end of it.
    [[nodiscard]] bool isFromService() const { return isReply() || kind_ == Kind::Refused; }

    /// One of the reply's values; an invalid one where there is none.
    [[nodiscard]] QVariant value(qsizetype index = 0) const;

    /// The value of a reply that has just one, of this type; else the name of the error.
    [[nodiscard]] Result<QVariant> valueOf(QLatin1String signature) const;

    /// The value of a property that was asked for by "Get"; an invalid one where there is none.
    [[nodiscard]] QVariant property() const;

    /// "org.freedesktop.DBus.Error.AccessDenied" or such; empty for a reply.
    [[nodiscard]] QString errorName() const;

    /// The error in words, or by its name where it came without words; empty for a reply.
    [[nodiscard]] QString errorText() const;

    /// For values of types that have to be taken apart.
    [[nodiscard]] const QDBusMessage& message() const { return message_; }

  private:
    QDBusMessage message_;
    Kind kind_ = Kind::Unanswered;
};

} // namespace quorvane
