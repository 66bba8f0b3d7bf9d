#pragma once

#include <QDateTime>
#include <QStringList>
#include <QVariant>

#include <cmath>
#include <string>

namespace quorvane::test {

/// A value with the types and the exact bits of all that it holds, as text: two values are the same
/// property list exactly when their descriptions are equal. (QVariant's own comparison takes 1, 1.0
/// and true for equal, and NaN for different from itself.)
inline std::string describe(const QVariant& value) {
    std::string result = value.isValid() ? value.typeName() : "nothing";
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        result += '{';
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            result += describe(entry.key()) + ": " + describe(entry.value()) + ", ";
        }
        return result + '}';
    }
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        result += '[';
        for (const QVariant& item : list) {
            result += describe(item) + ", ";
        }
        return result + ']';
    }
    case QMetaType::QByteArray:
        return result + ' ' + value.toByteArray().toHex().toStdString();
    case QMetaType::QDateTime:
        return result + ' ' + value.toDateTime().toString(Qt::ISODateWithMs).toStdString();
    case QMetaType::Double: {
        const auto number = value.toDouble();
        return result + ' ' + (std::signbit(number) ? "negative " : "") +
               QString::number(number, 'g', 17).toStdString();
    }
    default:
        return result + ' ' + value.toString().toStdString();
    }
}

} // namespace quorvane::test
