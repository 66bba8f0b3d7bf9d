#pragma once

#include "tests/support/Daemon.h"
#include "tests/support/PrivateBus.h"

#include <QString>

#include <vector>

namespace quorvane::test {

/// A laptop that does not exist, with a charger, a battery at 80 % and a backlight at 700 of 1000,
/// and the real services that run on it. Everything lives in the bus's folder and ends with this
/// object.
class FakeLaptop {
  public:
    /// Why it cannot be had on this machine; empty where it can.
    [[nodiscard]] static QString whyNot();

    /// Why the real logind cannot run on it here; empty where it can.
    [[nodiscard]] static QString whyNoLogind();

    /// Starts it and waits until it stands.
    explicit FakeLaptop(const PrivateBus& systemBus);
    ~FakeLaptop();
    FakeLaptop(const FakeLaptop&) = delete;
    FakeLaptop& operator=(const FakeLaptop&) = delete;

    [[nodiscard]] bool isUp() const { return !root_.isEmpty(); }

    /// Where its sysfs lies.
    [[nodiscard]] QString sysfs() const { return root_ + QStringLiteral("/sys"); }

    /// Makes this process hear the kernel's announcements of the laptop. Works in an executable
    /// that is linked with the testbed's preload library.
    void join();

    /// Runs a command of tests/fixtures/fake_laptop.py, for example "charge 15 12". Returns the
    /// answer; a command that fails is a failure of the test.
    QString run(const QString& command);

    /// Waits until UPower owns its name.
    bool startUPower();

    [[nodiscard]] Daemon& uPower() { return uPower_; }

    /// The command line that becomes UPower, for a bus's service file.
    [[nodiscard]] QString uPowerCommand() const;

    /// Waits until logind owns its name.
    bool startLogind();

    [[nodiscard]] Daemon& logind() { return logind_; }

    /// Opens a session of root on logind's seat, in the foreground; returns its object path.
    QString openSession();

    /// Makes this process a member of the session, until this object ends. Returns false where the
    /// machine's control groups do not allow that.
    bool enterSession(const QString& session);

  private:
    bool startPython(Daemon& daemon, const QStringList& arguments, const QString& log);
    [[nodiscard]] QString logFile(const QString& name) const;

    const PrivateBus& bus_;
    QString socket_;
    QString root_;
    QString formerPlace_; ///< the control group to go back to
    std::vector<int> occupied_;
    Daemon laptop_;
    Daemon uPower_;
    Daemon systemd_;
    Daemon logind_;
    Daemon sessionLeader_;
    Daemon session_;
};

} // namespace quorvane::test
