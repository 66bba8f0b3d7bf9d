// Stands for the privileged helper: started by the bus, answers its commands, and does what the
// file "behaviour" in its folder says at that moment.
//   helper_process FOLDER
// Behaviours: "answer" (also without the file), "silent" (takes calls, never replies), "die" (ends
// over a call), "leave" (is about to leave, once; afterwards "answer"), "always-leave", "deny",
// "wrong" (replies of other types), "garbage" (an error of many lines).
// Every call is noted in the file "calls", one a line: process id, member, first argument. The
// method "End" ends it without a reply.

#include "platform/linux/common/HelperNames.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QFile>

#include <cstdlib>
#include <unistd.h>

using namespace quorvane;

namespace {

class FakeHelper final : public QDBusVirtualObject {
  public:
    FakeHelper(QString folder, const QDBusConnection& bus)
        : folder_(std::move(folder)), bus_(bus) {}

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& /*bus*/) override {
        if (call.member() == QLatin1String("End")) {
            ::_exit(EXIT_SUCCESS);
        }
        call.setDelayedReply(true);
        note(call);
        obey(call, behaviour());
        return true;
    }

  private:
    [[nodiscard]] QString behaviour() const {
        QFile file(folder_ + QStringLiteral("/behaviour"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                              : QStringLiteral("answer");
    }

    void note(const QDBusMessage& call) const {
        QFile file(folder_ + QStringLiteral("/calls"));
        if (file.open(QIODevice::Append)) {
            file.write(QStringLiteral("%1 %2 %3\n")
                           .arg(QCoreApplication::applicationPid())
                           .arg(call.member(), call.arguments().value(0).toString())
                           .toUtf8());
        }
    }

    void obey(const QDBusMessage& call, const QString& wish) {
        if (wish == QLatin1String("silent")) {
            return;
        }
        if (wish == QLatin1String("die")) {
            ::_exit(EXIT_FAILURE);
        }
        if (wish == QLatin1String("leave") || wish == QLatin1String("always-leave")) {
            leave(call, wish == QLatin1String("leave"));
        } else if (wish == QLatin1String("deny")) {
            bus_.send(
                call.createErrorReply(QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"),
                                      QStringLiteral("not you")));
        } else if (wish == QLatin1String("garbage")) {
            bus_.send(call.createErrorReply(QStringLiteral("com.example.Error"),
                                            QStringLiteral("one\ntwo\x1b[31m\u202e") +
                                                QString(1000, QLatin1Char('x'))));
        } else if (wish == QLatin1String("wrong")) {
            bus_.send(call.createReply(7));
        } else {
            answer(call);
        }
    }

    /// As the real one does: whoever sends his call again reaches a new helper.
    void leave(const QDBusMessage& call, bool once) {
        if (once) {
            QFile::remove(folder_ + QStringLiteral("/behaviour"));
        }
        bus_.unregisterService(helpernames::label);
        bus_.send(call.createErrorReply(QString(helpernames::leavingError),
                                        QStringLiteral("about to leave")));
        // Returns when the bus has passed it on.
        bus_.call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
        ::_exit(EXIT_SUCCESS);
    }

    void answer(const QDBusMessage& call) {
        if (call.member() == helpernames::getTaskPowerMetrics) {
            bus_.send(call.createReply(
                QStringList{QStringLiteral("first line"), QStringLiteral("second line")}));
        } else if (call.member() == helpernames::getVersion) {
            bus_.send(call.createReply(QStringLiteral("7")));
        } else {
            bus_.send(call.createReply(QStringLiteral("done ") + call.member() + QLatin1Char(' ') +
                                       call.arguments().value(0).toString()));
        }
    }

    QString folder_;
    QDBusConnection bus_;
};

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        return 2;
    }
    QDBusConnection bus = QDBusConnection::systemBus();
    FakeHelper helper(QString::fromLocal8Bit(argv[1]), bus);
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                QCoreApplication::instance(), SLOT(quit()));
    const bool isUp = bus.registerVirtualObject(QString(helpernames::path), &helper) &&
                      bus.registerService(helpernames::label);
    return isUp ? QCoreApplication::exec() : EXIT_FAILURE;
}
