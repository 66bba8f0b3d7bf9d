#include "platform/linux/helperclient/OneLine.h"

namespace quorvane {

QString oneLine(const QString& text) {
    constexpr qsizetype limit = 200;
    QString line;
    for (const QChar each : text) {
        const QChar::Category kind = each.category();
        const bool isHarmful = kind == QChar::Other_Control || kind == QChar::Other_Format ||
                               kind == QChar::Separator_Line || kind == QChar::Separator_Paragraph;
        line += isHarmful ? QLatin1Char(' ') : each;
    }
    line = line.simplified();
    if (line.size() > limit) {
        line.truncate(line.at(limit - 1).isHighSurrogate() ? limit - 1 : limit);
    }
    return line;
}

} // namespace quorvane
