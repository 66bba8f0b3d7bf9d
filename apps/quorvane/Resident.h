#pragma once

#include <QDBusConnection>

#include <functional>

namespace quorvane {

class AppDelegate;
class RunningCopies;

/// What `quorvane` can be told to do. Each returns the process's exit status and tells the user in
/// plain words on standard error what went wrong.
class Resident {
  public:
    Resident(const QDBusConnection& sessionBus, const QDBusConnection& systemBus);

    /// Runs until the user quits or the session ends.
    int run();

    /// Asks the running copy to quit, which ends Low Power Mode and stores the battery history.
    int quitRunningCopy();

    /// Puts back whatever a run that has ended left changed on the machine, where `systemBus` gives
    /// the way to the displays; it is called after what needs no bus. Needs no session.
    static int restore(const std::function<QDBusConnection()>& systemBus);

  private:
    /// Returns the exit status when the program is to end.
    static int launch(AppDelegate& delegate, RunningCopies& copies);

    QDBusConnection sessionBus_;
    QDBusConnection systemBus_;
};

} // namespace quorvane
