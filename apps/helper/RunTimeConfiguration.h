#pragma once

#include "platform/linux/common/FileWatch.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <sys/types.h>

namespace quorvane {

/// What the run-time configuration file says: "0" turbo off, "1" turbo on.
///
/// Anybody may put anything at its path. It counts only if it is a regular file, with one name, of
/// a user who is in front of the machine; no link is followed, nothing is waited for, and one byte
/// is read. Main thread only.
class RunTimeConfiguration final : public QObject {
    Q_OBJECT

  public:
    using Users = std::function<std::set<uid_t>()>;

    /// `users` tells who is in front of the machine now.
    RunTimeConfiguration(QString path, Users users);

    /// Tells what the file says, now and after each change, until `stop`. However often it changes,
    /// it is looked at twenty times a second at most.
    void start();
    void stop();

    /// '0' or '1'; nothing when the file does not count or says something else.
    [[nodiscard]] std::optional<char> read() const;

  Q_SIGNALS:
    void said(std::optional<char> setting);

  private:
    QString path_;
    Users users_;
    std::unique_ptr<FileWatch> watch_;
    QTimer settling_;
};

/// The users of the sessions that are active on a seat, as logind records them.
[[nodiscard]] std::set<uid_t> usersInFront();

} // namespace quorvane
