#include "tests/support/FakeLaptop.h"

#include "tests/support/WaitUntil.h"

#include <QCoreApplication>
#include <QFile>
#include <gtest/gtest.h>

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quorvane::test {

namespace {

QString fixture(const char* name) {
    return QStringLiteral(QUORVANE_TEST_FIXTURES "/") + QLatin1String(name);
}

QString python() {
    return QStringLiteral("/usr/bin/python3");
}

struct Outcome {
    bool isGood = false;
    QString output;
};

Outcome runPython(const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(python(), arguments);
    const bool hasEnded = process.waitForFinished();
    return {hasEnded && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
            QString::fromUtf8(process.readAll()).trimmed()};
}

QString whyNotOf(const QStringList& arguments) {
    const Outcome check = runPython(arguments);
    return check.isGood ? QString() : check.output;
}

QString firstLineOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()) : QString();
}

/// One line to the socket, one line back; empty when nobody answers.
QByteArray ask(const QString& socketPath, const QByteArray& line) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(socketPath);
    std::strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QByteArray answer;
    if (::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        QFile stream;
        if (stream.open(connection, QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            stream.write(line + '\n');
            answer = stream.readLine().trimmed();
        }
    }
    ::close(connection);
    return answer;
}

} // namespace

QString FakeLaptop::whyNot() {
    return whyNotOf({fixture("fake_laptop.py"), QStringLiteral("check")});
}

QString FakeLaptop::whyNoLogind() {
    return whyNotOf({fixture("laptop_services.py"), QStringLiteral("check-logind")});
}

FakeLaptop::FakeLaptop(const PrivateBus& systemBus)
    : bus_(systemBus), socket_(systemBus.folder() + QStringLiteral("/laptop.socket")) {
    laptop_.start(python(), {fixture("fake_laptop.py"), QStringLiteral("serve"), socket_},
                  logFile(QStringLiteral("laptop")), {QStringLiteral("TMPDIR=") + bus_.folder()});
    QByteArray answer;
    if (waitUntil([this, &answer] {
            answer = ask(socket_, "root");
            return !answer.isEmpty() || !laptop_.isRunning();
        })) {
        root_ = QString::fromUtf8(answer).section(QLatin1Char(' '), 1);
    }
}

FakeLaptop::~FakeLaptop() {
    if (!formerPlace_.isEmpty()) {
        runPython({fixture("laptop_services.py"), QStringLiteral("leave"), formerPlace_,
                   QString::number(QCoreApplication::applicationPid())});
    }
    for (const int descriptor : occupied_) {
        ::close(descriptor);
    }
    qunsetenv("UMOCKDEV_DIR");
}

void FakeLaptop::join() {
    // Listeners of one laptop get each other's announcements when their descriptors have the same
    // number, so those of this process begin above the ones of the services.
    constexpr int firstDescriptor = 64;
    while (occupied_.empty() || occupied_.back() < firstDescriptor) {
        occupied_.push_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    }
    qputenv("UMOCKDEV_DIR", root_.toUtf8());
}

QString FakeLaptop::run(const QString& command) {
    const QString answer = QString::fromUtf8(ask(socket_, command.toUtf8()));
    EXPECT_EQ(answer.section(QLatin1Char(' '), 0, 0).toStdString(), "ok")
        << command.toStdString() << ": " << answer.toStdString();
    return answer.section(QLatin1Char(' '), 1);
}

bool FakeLaptop::startUPower() {
    const QString service = QStringLiteral("org.freedesktop.UPower");
    return startPython(
               uPower_,
               {fixture("laptop_services.py"), QStringLiteral("upowerd"), root_, bus_.folder()},
               QStringLiteral("upowerd")) &&
           waitUntil([this, &service] { return bus_.hasOwner(service); });
}

QString FakeLaptop::uPowerCommand() const {
    return QStringLiteral("%1 %2 upowerd %3 %4")
        .arg(python(), fixture("laptop_services.py"), root_, bus_.folder());
}

bool FakeLaptop::startLogind() {
    const auto isOwned = [this](const char* service) {
        return waitUntil([this, service] { return bus_.hasOwner(QLatin1String(service)); });
    };
    if (!systemd_.isRunning() &&
        !(startPython(systemd_, {fixture("fake_systemd.py")}, QStringLiteral("systemd")) &&
          isOwned("org.freedesktop.systemd1"))) {
        return false;
    }
    return startPython(logind_, {fixture("laptop_services.py"), QStringLiteral("logind"), root_},
                       QStringLiteral("logind")) &&
           isOwned("org.freedesktop.login1");
}

QString FakeLaptop::openSession() {
    sessionLeader_.start(QStringLiteral("sleep"), {QStringLiteral("600")},
                         logFile(QStringLiteral("leader")));
    startPython(session_,
                {fixture("laptop_services.py"), QStringLiteral("session"), QStringLiteral("0"),
                 QString::number(sessionLeader_.processId()), QStringLiteral("x11")},
                QStringLiteral("session"));
    QString path;
    const bool isOpen = waitUntil([this, &path] {
        path = firstLineOf(logFile(QStringLiteral("session")));
        return path.endsWith(QLatin1Char('\n')) || !session_.isRunning();
    });
    return isOpen && session_.isRunning() ? path.trimmed() : QString();
}

bool FakeLaptop::enterSession(const QString& session) {
    const Outcome entering =
        runPython({fixture("laptop_services.py"), QStringLiteral("enter"), QStringLiteral("0"),
                   session, QString::number(QCoreApplication::applicationPid())});
    if (entering.isGood) {
        formerPlace_ = entering.output;
    }
    return entering.isGood;
}

bool FakeLaptop::startPython(Daemon& daemon, const QStringList& arguments, const QString& log) {
    return daemon.start(python(), arguments, logFile(log));
}

QString FakeLaptop::logFile(const QString& name) const {
    return bus_.folder() + QLatin1Char('/') + name + QStringLiteral(".log");
}

} // namespace quorvane::test
