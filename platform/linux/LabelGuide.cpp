#include "platform/linux/LabelGuide.h"

#include <QRegularExpression>

namespace quorvane {

QString labelGuide(const QString& label) {
    static const QRegularExpression percentage(QStringLiteral("\\d+%"));
    static const QRegularExpression time(QStringLiteral("\\d+:\\d\\d|\u2026"));
    QString guide = label;
    return guide.replace(percentage, QStringLiteral("100%")).replace(time, QStringLiteral("00:00"));
}

} // namespace quorvane
