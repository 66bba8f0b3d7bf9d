#include "core/Localized.h"

#include <QCoreApplication>

namespace quorvane {

QString localized(const char* key) {
    return QCoreApplication::translate("Quorvane", key);
}

QString localized(const char* key, int number) {
    return QCoreApplication::translate("Quorvane", key, nullptr, number);
}

QString filledIn(const QString& text, const QStringList& texts) {
    const QLatin1String directive("%@");
    QString result = text;
    qsizetype from = 0;
    for (const QString& each : texts) {
        const qsizetype place = result.indexOf(directive, from);
        if (place < 0) {
            break;
        }
        result.replace(place, directive.size(), each);
        from = place + each.size();
    }
    return result;
}

QString filledIn(const QString& text, int number) {
    QString result;
    bool filled = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QChar();
        if (text.at(i) == u'%' && next == u'%') {
            result += u'%';
            ++i;
        } else if (text.at(i) == u'%' && next == u'd' && !filled) {
            result += QString::number(number);
            filled = true;
            ++i;
        } else {
            result += text.at(i);
        }
    }
    return result;
}

} // namespace quorvane
