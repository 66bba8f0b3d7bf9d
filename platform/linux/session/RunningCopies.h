#pragma once

#include <QDBusConnection>
#include <QString>
#include <QStringList>

namespace quorvane {

/// The copies of Quorvane that run in this session. Each owns its edition's bundle identifier as a
/// name on the session bus. Main thread only.
class RunningCopies {
  public:
    explicit RunningCopies(const QDBusConnection& sessionBus);

    /// The names of both editions.
    [[nodiscard]] static QStringList names();

    /// The names that are owned now; empty when no copy runs.
    [[nodiscard]] QStringList running() const;

    /// Claims the session for this program, before it does anything that another copy could do too.
    /// Of two programs that try at the same moment one succeeds. Returns whether this one did.
    [[nodiscard]] bool claim();

    /// How many copies with this bundle identifier run. Once `claim` was called, this program
    /// counts as one of the edition `ownIdentifier`, and so does a copy that is just starting.
    [[nodiscard]] int count(const QString& bundleIdentifier, const QString& ownIdentifier) const;

    /// Takes the name of this edition: from now on the program counts as a running copy, and acts
    /// on what it is told. Returns whether it got the name.
    bool announce(const QString& bundleIdentifier);

    /// Asks every running copy to quit and waits until none is left. Returns whether that came true
    /// within half a minute.
    [[nodiscard]] bool quitAll();

  private:
    [[nodiscard]] bool take(const QString& name);

    QDBusConnection bus_;
    enum class Claim { NotTried, Won, Lost } claim_ = Claim::NotTried;
};

} // namespace quorvane
