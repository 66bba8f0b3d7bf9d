#include "platform/linux/DBusMenuItemProperties.h"

#include <QByteArray>

namespace quorvane {

namespace {

// A single underscore would vanish and make the letter behind it the item's key.
QString withoutMnemonics(QString title) {
    return title.replace(QLatin1Char('_'), QLatin1String("__"));
}

} // namespace

QVariantMap dbusMenuProperties(const MenuItem& item) {
    if (item.isSeparatorItem()) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    QVariantMap properties;
    if (!item.title().isEmpty()) {
        properties.insert(QStringLiteral("label"), withoutMnemonics(item.title()));
    }
    if (!item.isEnabled()) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (item.state()) {
        properties.insert(QStringLiteral("toggle-type"), QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), *item.state() ? 1 : 0);
    }
    if (item.submenu() != nullptr) {
        properties.insert(dbusMenuRootProperties());
    }
    return properties;
}

QVariantMap dbusMenuRootProperties() {
    return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

QVariant dbusMenuDefault(const QString& name) {
    static const QVariantMap defaults{{QStringLiteral("type"), QStringLiteral("standard")},
                                      {QStringLiteral("label"), QString()},
                                      {QStringLiteral("enabled"), true},
                                      {QStringLiteral("visible"), true},
                                      {QStringLiteral("icon-name"), QString()},
                                      {QStringLiteral("icon-data"), QByteArray()},
                                      {QStringLiteral("toggle-type"), QString()},
                                      {QStringLiteral("toggle-state"), -1},
                                      {QStringLiteral("children-display"), QString()},
                                      {QStringLiteral("disposition"), QStringLiteral("normal")}};
    return defaults.value(name);
}

} // namespace quorvane
