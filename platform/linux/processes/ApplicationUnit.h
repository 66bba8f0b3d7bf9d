#pragma once

#include <QByteArray>
#include <QList>

namespace quorvane {

/// The systemd unit of an application: desktops start each one in a scope or service of its own,
/// which is called `app-[launcher-]ID[-RANDOM].scope` or `app-[launcher-]ID[@RANDOM].service`, in
/// which Snap has names of its own (`snap.PACKAGE.PROGRAM-UUID.scope`).
class ApplicationUnit {
  public:
    /// `name` is the unit's. One that is no application's has no id.
    explicit ApplicationUnit(const QByteArray& name);

    /// The unit of a process, from the text of /proc/PID/cgroup.
    [[nodiscard]] static ApplicationUnit ofControlGroups(const QByteArray& text);

    /// The ids that the name may stand for, the likeliest first: launchers differ in whether they
    /// name themselves, add a number and escape a "-". Empty when it is no application's unit.
    [[nodiscard]] const QList<QByteArray>& possibleIds() const { return ids_; }

  private:
    void readApplication(QByteArray name, bool isScope);
    void readSnap(QByteArray name);

    QList<QByteArray> ids_;
};

} // namespace quorvane
