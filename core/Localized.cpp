#include "core/Localized.h"

#include <QCoreApplication>

namespace quorvane {

QString localized(const char* key) {
    return QCoreApplication::translate("Quorvane", key);
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
