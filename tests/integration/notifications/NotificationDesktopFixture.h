#pragma once

#include "tests/integration/notifications/NotificationCenterFixture.h"
#include "tests/support/Daemon.h"
#include "tests/support/XServer.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace quorvane::test {

/// An empty home folder of the test's own, in its environment.
class PrivateHome {
  public:
    PrivateHome() {
        set("HOME", QString());
        set("XDG_CONFIG_HOME", QStringLiteral("config"));
        set("XDG_DATA_HOME", QStringLiteral("data"));
        set("XDG_CACHE_HOME", QStringLiteral("cache"));
        set("XDG_RUNTIME_DIR", QStringLiteral("run"));
    }

    [[nodiscard]] QString filePath(const QString& name) const { return folder_.filePath(name); }

  private:
    void set(const char* variable, const QString& name) {
        const QString path = folder_.filePath(name);
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(variable, QFile::encodeName(path));
    }

    QTemporaryDir folder_;
};

/// What has to be in the environment before the bus starts, because services that the bus starts
/// inherit it from there.
class PrivateDesktop {
  protected:
    PrivateHome home_;
    XServer display_;
};

/// The notification centre in a session with a real notification server.
class NotificationDesktopFixture : protected PrivateDesktop, public NotificationCenterFixture {
  protected:
    void TearDown() override {
        daemon_.stop();
        NotificationCenterFixture::TearDown();
    }

    /// The first of these programs that is not installed, or an empty string.
    [[nodiscard]] static QString missing(const QStringList& programs) {
        for (const QString& program : programs) {
            if (QStandardPaths::findExecutable(program).isEmpty()) {
                return program;
            }
        }
        return {};
    }

    /// Runs a program to its end and returns what it has printed.
    static QString run(const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments, QIODevice::ReadOnly);
        process.waitForFinished(10000);
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    void write(const QString& path, const QString& contents) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents.toUtf8());
    }

    [[nodiscard]] bool waitForServer() const {
        return waitUntil(
            [this] { return bus_.hasOwner(QStringLiteral("org.freedesktop.Notifications")); });
    }

    Daemon daemon_;
};

} // namespace quorvane::test
