#include "tests/integration/statusitem/StatusItemFixture.h"

#include <QDBusMetaType>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QXmlStreamReader>

namespace quorvane::test {

namespace {

constexpr QLatin1String standardInterfaces("org.freedesktop.DBus.");

struct Argument {
    QString type;
    bool isOutput = false;
};

struct Method {
    QString interface;
    QString name;
    QList<Argument> arguments;

    [[nodiscard]] QString signature(bool ofOutput) const {
        QString types;
        for (const Argument& argument : arguments) {
            types += argument.isOutput == ofOutput ? argument.type : QString();
        }
        return types;
    }
};

struct Property {
    QString interface;
    QString name;
    QString type;
};

/// What introspection tells of one object, without the interfaces that every object has.
struct Description {
    QList<Method> methods;
    QList<Property> properties;

    explicit Description(const QString& xml) {
        QXmlStreamReader reader(xml);
        QString interface;
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement) {
                read(reader.name().toString(), reader.attributes(), interface);
            }
        }
        EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    }

  private:
    void read(const QString& element, const QXmlStreamAttributes& attributes, QString& interface) {
        const auto value = [&attributes](const char* name) {
            return attributes.value(QLatin1String(name)).toString();
        };
        if (element == QLatin1String("interface")) {
            interface = value("name");
        } else if (interface.startsWith(standardInterfaces)) {
            return;
        } else if (element == QLatin1String("property")) {
            properties.append({interface, value("name"), value("type")});
        } else if (element == QLatin1String("method")) {
            methods.append({interface, value("name"), {}});
        } else if (element == QLatin1String("arg") && !value("direction").isEmpty()) {
            methods.last().arguments.append(
                {value("type"), value("direction") == QLatin1String("out")});
        }
    }
};

QString typeOf(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        return value.value<QDBusArgument>().currentSignature();
    }
    return QLatin1String(QDBusMetaType::typeToSignature(value.metaType()));
}

/// A value that a host could send.
QVariant example(const QString& type) {
    static const QHash<QString, QVariant> values{
        {QStringLiteral("i"), 0},
        {QStringLiteral("u"), 0U},
        {QStringLiteral("s"), QStringLiteral("label")},
        {QStringLiteral("v"), QVariant::fromValue(QDBusVariant(0))},
        {QStringLiteral("as"), QStringList()},
        {QStringLiteral("ai"), QVariant::fromValue(QList<int>{0})},
        {QStringLiteral("a(isvu)"), QVariant::fromValue(QList<DBusMenuEvent>{
                                        {0, QStringLiteral("opened"), QDBusVariant(0), 0}})}};
    EXPECT_TRUE(values.contains(type)) << type.toStdString();
    return values.value(type);
}

} // namespace

class StatusItemProtocolTest : public StatusItemFixture,
                               public testing::WithParamInterface<const char*> {
  protected:
    [[nodiscard]] QString path() const { return QLatin1String(GetParam()); }

    [[nodiscard]] Description describe() {
        const QDBusMessage reply =
            ask(path(), QStringLiteral("org.freedesktop.DBus.Introspectable"),
                QStringLiteral("Introspect"));
        return Description(reply.arguments().value(0).toString());
    }

    [[nodiscard]] QDBusMessage properties(const char* method, const QVariantList& arguments) {
        return ask(path(), QStringLiteral("org.freedesktop.DBus.Properties"), QLatin1String(method),
                   arguments);
    }
};

TEST_P(StatusItemProtocolTest, EveryProperty_HasTheTypeThatIntrospectionTells) {
    const Description description = describe();
    ASSERT_FALSE(description.properties.isEmpty());
    for (const Property& property : description.properties) {
        const QDBusMessage reply = properties("Get", {property.interface, property.name});
        const QVariant value = reply.arguments().value(0).value<QDBusVariant>().variant();
        EXPECT_EQ(typeOf(value), property.type) << property.name.toStdString();
    }
}

TEST_P(StatusItemProtocolTest, GetAll_HasExactlyThePropertiesOfIntrospection) {
    const Description description = describe();
    const QDBusMessage reply = properties("GetAll", {description.properties.at(0).interface});
    const auto all = qdbus_cast<QVariantMap>(reply.arguments().value(0));
    EXPECT_EQ(all.size(), description.properties.size());
    for (const Property& property : description.properties) {
        EXPECT_EQ(typeOf(all.value(property.name)), property.type) << property.name.toStdString();
    }
}

TEST_P(StatusItemProtocolTest, EveryMethod_AnswersWithTheTypesThatIntrospectionTells) {
    const Description description = describe();
    ASSERT_FALSE(description.methods.isEmpty());
    for (const Method& method : description.methods) {
        QVariantList arguments;
        for (const Argument& argument : method.arguments) {
            if (!argument.isOutput) {
                arguments.append(example(argument.type));
            }
        }
        const QDBusMessage reply = ask(path(), method.interface, method.name, arguments);
        EXPECT_EQ(reply.errorMessage(), QString()) << method.name.toStdString();
        EXPECT_EQ(reply.signature(), method.signature(true)) << method.name.toStdString();
    }
}

TEST_P(StatusItemProtocolTest, EveryMethodWithWrongArguments_Error) {
    const QList<QVariantList> wrong{{}, {true}, {QStringLiteral("x"), 1.5, QStringList()}};
    const Description description = describe();
    for (const Method& method : description.methods) {
        for (const QVariantList& arguments : wrong) {
            const QDBusMessage reply = ask(path(), method.interface, method.name, arguments);
            EXPECT_EQ(reply.errorName(), QLatin1String("org.freedesktop.DBus.Error.InvalidArgs"))
                << method.name.toStdString();
        }
    }
    settle();
}

TEST_P(StatusItemProtocolTest, WhatIsNotThere_ErrorOfItsKind) {
    const QString interface = describe().properties.at(0).interface;
    const auto error = [](const char* name) {
        return QLatin1String("org.freedesktop.DBus.Error.") + QLatin1String(name);
    };
    const QString other = QStringLiteral("org.example.Other");
    EXPECT_EQ(ask(path(), interface, QStringLiteral("Nothing")).errorName(),
              error("UnknownMethod"));
    EXPECT_EQ(ask(path(), other, QStringLiteral("Activate")).errorName(),
              error("UnknownInterface"));
    EXPECT_EQ(properties("Get", {interface, QStringLiteral("Nothing")}).errorName(),
              error("UnknownProperty"));
    EXPECT_EQ(properties("GetAll", {other}).errorName(), error("UnknownInterface"));
    EXPECT_EQ(properties("Get", {1, 2}).errorName(), error("InvalidArgs"));
    EXPECT_EQ(properties("Nothing", {}).errorName(), error("UnknownMethod"));
}

TEST_P(StatusItemProtocolTest, PropertySet_IsRefused) {
    const Property property = describe().properties.at(0);
    const QVariant value = QVariant::fromValue(QDBusVariant(QStringLiteral("other")));
    EXPECT_EQ(properties("Set", {property.interface, property.name, value}).errorName(),
              QLatin1String("org.freedesktop.DBus.Error.PropertyReadOnly"));
}

INSTANTIATE_TEST_SUITE_P(Objects, StatusItemProtocolTest,
                         testing::Values("/StatusNotifierItem", "/MenuBar"), [](const auto& test) {
                             return test.index == 0 ? std::string("Item") : std::string("Menu");
                         });

/// Replays host-calls.txt: what real hosts were seen to call while a user looked at the item,
/// turned the wheel over it, clicked it with each button and chose from its menu and submenu.
class StatusItemHostsTest : public StatusItemFixture {};

TEST_F(StatusItemHostsTest, EveryCallOfRecordedHosts_IsAnswered) {
    if (QStandardPaths::findExecutable(QStringLiteral("gdbus")).isEmpty()) {
        GTEST_SKIP() << "skipped: gdbus is not installed";
    }
    QFile file(QStringLiteral(QUORVANE_HOST_CALLS));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    int calls = 0;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
            continue;
        }
        QStringList fields = line.split(QLatin1Char('\t'));
        const QString host = fields.takeFirst();
        QProcess gdbus;
        gdbus.start(QStringLiteral("gdbus"),
                    QStringList{QStringLiteral("call"), QStringLiteral("--address"), bus_.address(),
                                QStringLiteral("--dest"), program_.baseService(),
                                QStringLiteral("--object-path"), fields.takeFirst(),
                                QStringLiteral("--method"), fields.takeFirst(),
                                QStringLiteral("--")} +
                        fields);
        ASSERT_TRUE(waitUntil([&gdbus] { return gdbus.state() == QProcess::NotRunning; }));
        EXPECT_EQ(gdbus.exitCode(), 0) << line.toStdString() << '\n'
                                       << gdbus.readAllStandardError().toStdString();
        ++calls;
    }
    EXPECT_GT(calls, 0);
    EXPECT_TRUE(clicks_.contains(QStringLiteral("quit")));
}

} // namespace quorvane::test
