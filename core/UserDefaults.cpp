#include "core/UserDefaults.h"

#include "platform/Log.h"

#include <array>
#include <cmath>
#include <optional>

namespace quorvane {

namespace {

std::optional<bool> boolFromText(const QString& text) {
    constexpr std::array yes{QLatin1String("true"), QLatin1String("yes"), QLatin1String("on")};
    constexpr std::array no{QLatin1String("false"), QLatin1String("no"), QLatin1String("off")};
    const QString lower = text.trimmed().toLower();
    for (const QLatin1String each : yes) {
        if (lower == each) {
            return true;
        }
    }
    for (const QLatin1String each : no) {
        if (lower == each) {
            return false;
        }
    }
    bool isNumber = false;
    const double number = lower.toDouble(&isNumber);
    return isNumber ? std::optional(number != 0.0) : std::nullopt;
}

// A value as `type`, or nothing. QVariant's own conversion would make "maybe" a true, "70.0" no
// integer at all and 1e300 an arbitrary one.
std::optional<QVariant> converted(QVariant value, QMetaType type) {
    const bool isText = value.metaType() == QMetaType::fromType<QString>();
    if (type == QMetaType::fromType<bool>() && isText) {
        const std::optional<bool> flag = boolFromText(value.toString());
        return flag ? std::optional<QVariant>(*flag) : std::nullopt;
    }
    const bool toInteger = type == QMetaType::fromType<int>() ||
                           type == QMetaType::fromType<uint>() ||
                           type == QMetaType::fromType<qulonglong>();
    if (toInteger || type == QMetaType::fromType<float>() ||
        type == QMetaType::fromType<double>()) {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number)) {
            return std::nullopt;
        }
        if (toInteger) {
            const double lowest = type == QMetaType::fromType<int>() ? -2147483648.0 : 0.0;
            if (number < lowest || number > 2147483647.0) {
                return std::nullopt;
            }
            value = static_cast<int>(number);
        }
    }
    if (!value.convert(type)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

void UserDefaults::registerDefaults(const QVariantMap& defaults) {
    registered_.insert(defaults);
}

QVariant UserDefaults::objectForKey(const QString& key) const {
    const QVariant stored = domain_.value(key);
    return stored.isValid() ? stored : registered_.value(key);
}

QVariant UserDefaults::valueForKey(const QString& key, QMetaType type) const {
    const QVariant stored = domain_.value(key);
    if (stored.isValid()) {
        if (const std::optional<QVariant> value = converted(stored, type)) {
            return *value;
        }
        log(QStringLiteral("The setting %1 cannot be \"%2\"; the default is used instead.")
                .arg(key, stored.toString()));
    }
    if (registered_.contains(key)) {
        if (const std::optional<QVariant> value = converted(registered_.value(key), type)) {
            return *value;
        }
    }
    return QVariant(type);
}

bool UserDefaults::boolForKey(const QString& key) const {
    return valueForKey(key, QMetaType::fromType<bool>()).toBool();
}

int UserDefaults::integerForKey(const QString& key) const {
    return valueForKey(key, QMetaType::fromType<int>()).toInt();
}

QString UserDefaults::stringForKey(const QString& key) const {
    return valueForKey(key, QMetaType::fromType<QString>()).toString();
}

QUrl UserDefaults::URLForKey(const QString& key) const {
    return QUrl(stringForKey(key));
}

bool UserDefaults::isStored(const QString& key) const {
    return domain_.value(key).isValid();
}

bool UserDefaults::setObject(const QVariant& value, const QString& key) {
    return domain_.write(key, value);
}

bool UserDefaults::setBool(bool value, const QString& key) {
    return setObject(value, key);
}

bool UserDefaults::setInteger(int value, const QString& key) {
    return setObject(value, key);
}

bool UserDefaults::setURL(const QUrl& value, const QString& key) {
    return setObject(value.toString(QUrl::FullyEncoded), key);
}

} // namespace quorvane
