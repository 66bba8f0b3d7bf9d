#pragma once

#include <QByteArray>
#include <QList>

namespace quorvane {

/// The systemd unit of an application, if it has one: which processes are its own and what it is
/// called are both read from here. Desktops start each application in a scope or service of its
/// own, which is called `app-[launcher-]ID[-RANDOM].scope` or `app-[launcher-]ID[@RANDOM].service`;
/// Snap has names of its own (`snap.PACKAGE.PROGRAM-UUID.scope`). The units of sessions, of the
/// desktop's services and of single tabs of a terminal are none.
class ApplicationUnit {
  public:
    /// None.
    ApplicationUnit() = default;

    /// The innermost one on the path of a control group; a unit's name is such a path too.
    explicit ApplicationUnit(const QByteArray& controlGroup);

    /// The unit of a process, from the text of /proc/PID/cgroup.
    [[nodiscard]] static ApplicationUnit ofControlGroups(const QByteArray& text);

    /// Whether a unit of this name is one of those that desktops make, and not Snap's.
    [[nodiscard]] static bool isMadeByDesktop(const QByteArray& name);

    /// The path down to the unit, the same for all of its processes. Empty when there is none.
    [[nodiscard]] const QByteArray& controlGroup() const { return controlGroup_; }

    /// The ids that the name may stand for, the likeliest first: launchers differ in whether they
    /// name themselves, add a number and escape a "-". Empty when it is no application's unit.
    [[nodiscard]] QList<QByteArray> possibleIds() const;

  private:
    QByteArray controlGroup_;
};

} // namespace quorvane
