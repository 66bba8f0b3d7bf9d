#pragma once

#include "apps/helper/Helper.h"
#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSet>
#include <gtest/gtest.h>

#include <memory>
#include <unistd.h>

namespace quorvane::test {

/// What polkit answers with: (bba{ss}).
struct PolkitAnswer {
    bool isAuthorized = false;
    bool isChallenge = false;
    QMap<QString, QString> details;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const PolkitAnswer& answer) {
    argument.beginStructure();
    argument << answer.isAuthorized << answer.isChallenge << answer.details;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, PolkitAnswer& answer) {
    argument.beginStructure();
    argument >> answer.isAuthorized >> answer.isChallenge >> answer.details;
    argument.endStructure();
    return argument;
}

/// polkit as the test wants it: says yes to what is allowed, and remembers what it was asked.
class FakePolkit {
  public:
    explicit FakePolkit(const PrivateBus& bus)
        : service_(bus, QStringLiteral("org.freedesktop.PolicyKit1"),
                   [this](const QDBusMessage& call) { return answer(call); }) {
        qDBusRegisterMetaType<PolkitAnswer>();
    }

    struct Question {
        QString subjectKind;
        QString subjectName;
        QString action;
        uint flags = 0;
    };

    bool allowsAll = true;
    bool challenges = false;
    std::function<QDBusMessage(const QDBusMessage& call)> nonsense;

    [[nodiscard]] const QList<Question>& questions() const { return questions_; }

    [[nodiscard]] FakeService& service() { return service_; }

  private:
    QDBusMessage answer(const QDBusMessage& call) {
        Question question;
        const QVariantList arguments = call.arguments();
        const auto subject = arguments.at(0).value<QDBusArgument>();
        QVariantMap details;
        subject.beginStructure();
        subject >> question.subjectKind >> details;
        subject.endStructure();
        question.subjectName = details.value(QStringLiteral("name")).toString();
        question.action = arguments.at(1).toString();
        question.flags = arguments.at(3).toUInt();
        questions_.append(question);
        if (nonsense) {
            return nonsense(call);
        }
        return call.createReply(QVariant::fromValue(PolkitAnswer{allowsAll, challenges, {}}));
    }

    FakeService service_;
    QList<Question> questions_;
};

/// One program that calls the helper, by a connection of its own.
class HelperCaller {
  public:
    HelperCaller(const PrivateBus& bus, const QString& name)
        : name_(name), connection_(bus.connection(name)) {}

    ~HelperCaller() { leave(); }

    HelperCaller(const HelperCaller&) = delete;
    HelperCaller& operator=(const HelperCaller&) = delete;

    void leave() {
        connection_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name_);
    }

    [[nodiscard]] QString busName() const { return connection_.baseService(); }

    QDBusPendingCall begin(QLatin1String method, const QVariantList& arguments = {}) {
        QDBusMessage call = QDBusMessage::createMethodCall(helpernames::label, helpernames::path,
                                                           helpernames::label, method);
        call.setArguments(arguments);
        return connection_.asyncCall(call);
    }

    QDBusMessage call(QLatin1String method, const QVariantList& arguments = {}) {
        QDBusPendingCall pending = begin(method, arguments);
        EXPECT_TRUE(waitUntil([&] { return pending.isFinished(); })) << method.data();
        return pending.reply();
    }

    /// The status text, or the error's name.
    std::string ask(QLatin1String method, const QVariantList& arguments = {}) {
        const QDBusMessage reply = call(method, arguments);
        return (reply.type() == QDBusMessage::ErrorMessage ? reply.errorName()
                                                           : reply.arguments().value(0).toString())
            .toStdString();
    }

    std::string load(const char* path = "/any/DisableTurboBoost.64bits.kext") {
        return ask(helpernames::loadModuleNamed, {QString::fromLatin1(path)});
    }

    std::string unload(const char* path = "/any/DisableTurboBoost.64bits.kext") {
        return ask(helpernames::unloadModuleNamed, {QString::fromLatin1(path)});
    }

    [[nodiscard]] QDBusConnection& connection() { return connection_; }

  private:
    QString name_;
    QDBusConnection connection_;
};

/// The whole helper in this process, on a bus of the test's own, over folders of the test's.
class RootHelperFixture : public testing::Test {
  protected:
    void SetUp() override {
        putBundle("CPUTune.kext", "com.TarnwickStudios.cputune");
        putBundle("DisableTurboBoost.64bits.kext", "com.TarnwickStudios.disableturboboost");
        putAttribute(noTurbo, "0");
        options.paths.sysfs = place("sys");
        options.paths.processes = QStringLiteral("/proc");
        options.paths.runtimeFolder = place("run");
        options.paths.runTimeConfiguration = place("tmp/RT.conf");
        options.paths.extensions = place("helper");
        options.users = [] { return std::set<uid_t>{::geteuid()}; };
        QDir().mkpath(place("tmp"));
        ASSERT_EQ(prepareRuntimeFolder(place("run")), std::nullopt);
    }

    void TearDown() override {
        helper.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("helper"));
    }

    void start() {
        helper = std::make_unique<Helper>(bus.connection(QStringLiteral("helper")), options, log);
        helper->putBackLeftovers();
        ASSERT_TRUE(helper->serve());
    }

    /// As a crash: nothing is put back, and the connection breaks.
    void loseHelper() {
        QDBusConnection::disconnectFromBus(QStringLiteral("helper"));
        helper.reset();
    }

    [[nodiscard]] QString place(const char* name) const {
        return bus.folder() + QLatin1Char('/') + QLatin1String(name);
    }

    static void putFile(const QString& path, const QByteArray& text) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    void putAttribute(const char* attribute, const char* value) const {
        putFile(place("sys/") + QLatin1String(attribute), QByteArray(value) + '\n');
    }

    [[nodiscard]] std::string attribute(const char* name) const {
        QFile file(place("sys/") + QLatin1String(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toStdString() : "(none)";
    }

    void putBundle(const char* name, const char* identifier) const {
        putFile(place("helper/") + QLatin1String(name) + QStringLiteral("/Contents/Info.plist"),
                QByteArray("<plist><dict><key>CFBundleIdentifier</key><string>") + identifier +
                    "</string><key>CFBundleVersion</key><string>1.0</string></dict></plist>");
    }

    [[nodiscard]] QByteArray loadedList() const {
        QFile file(place("run/loaded"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] bool turboBecomes(const char* value) const {
        return waitUntil([this, value] { return attribute(noTurbo) == value; });
    }

    static constexpr const char* noTurbo = "devices/system/cpu/intel_pstate/no_turbo";

    PrivateBus bus{PrivateBus::Type::System};
    FakePolkit polkit{bus};
    RecordingLog log;
    Helper::Options options;
    std::unique_ptr<Helper> helper;
};

} // namespace quorvane::test
