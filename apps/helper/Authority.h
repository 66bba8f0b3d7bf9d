#pragma once

#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace quorvane {

/// Whether a caller may do something: polkit decides, by what it knows of the process behind the
/// caller's unique name on the bus. Nobody is asked for a password. Main thread only.
class Authority final : public QObject {
  public:
    explicit Authority(const QDBusConnection& bus);

    using Decided = std::function<void(bool isAllowed)>;

    /// `sender` is the unique name that the bus itself has written on the message. Whatever goes
    /// wrong means no. The block runs later, once.
    void check(const QString& sender, const QString& action, const Decided& decided);

  private:
    BusCalls calls_;
};

} // namespace quorvane
