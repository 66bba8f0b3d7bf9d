#include "platform/linux/LabelGuide.h"

namespace quorvane {

// Without regular expressions: their compiler would stay in memory for this alone.
QString labelGuide(const QString& label) {
    const QString body = label.trimmed();
    QString longest = body;
    if (body.endsWith(QLatin1Char('%'))) {
        longest = QStringLiteral("100%");
    } else if (body.contains(QLatin1Char(':')) || body == QStringLiteral("\u2026")) {
        longest = QStringLiteral("00:00");
    }
    QString guide = label;
    return guide.replace(label.indexOf(body), body.size(), longest);
}

} // namespace quorvane
