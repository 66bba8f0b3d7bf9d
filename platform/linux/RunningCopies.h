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

    /// Takes the name of this edition. Of two programs that try at the same moment one gets it.
    /// Returns whether this one did.
    bool enter(const QString& bundleIdentifier);

    /// Asks every running copy to quit and waits until none is left. Returns whether that came true
    /// within half a minute.
    [[nodiscard]] bool quitAll();

  private:
    QDBusConnection bus_;
};

} // namespace quorvane
