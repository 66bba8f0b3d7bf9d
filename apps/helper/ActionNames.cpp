#include "apps/helper/ActionNames.h"

namespace quorvane {

namespace {

bool isKeptByPolkit(QChar character) {
    return (character >= QLatin1Char('a') && character <= QLatin1Char('z')) ||
           (character >= QLatin1Char('0') && character <= QLatin1Char('9')) ||
           character == QLatin1Char('.') || character == QLatin1Char('-');
}

} // namespace

QString actionnames::polkitAction(const QString& right) {
    QString action;
    for (const QChar each : right) {
        const QChar small = each.toLower();
        if (small == QLatin1Char('.') && action.endsWith(QLatin1Char('.'))) {
            continue;
        }
        action += isKeptByPolkit(small) ? small : QLatin1Char('-');
    }
    return action;
}

} // namespace quorvane
