#include "app/SettingsHelp.h"

#include "core/Words.h"
#include "mode/SettingsList.h"

#include <QStringList>

namespace quorvane {

namespace {

constexpr qsizetype textColumn = 42;
constexpr qsizetype columns = 80;

/// The lines of `text` when it begins at the text's column.
QStringList wrapped(const QString& text) {
    QStringList lines{QString()};
    for (const QString& word : words(text)) {
        QString& line = lines.last();
        if (line.isEmpty()) {
            line = word;
        } else if (textColumn + line.size() + 1 + word.size() <= columns) {
            line += QLatin1Char(' ') + word;
        } else {
            lines.append(word);
        }
    }
    return lines;
}

QString helpOf(const Setting& setting) {
    const QString name =
        QStringLiteral("  %1=%2").arg(QLatin1String(setting.key), QLatin1String(setting.values));
    const QStringList text = wrapped(QStringLiteral("[%1] %2").arg(
        setting.standardValue().toString(), QLatin1String(setting.help)));
    const QString nextLine = QLatin1Char('\n') + QString(textColumn, QLatin1Char(' '));
    return name.leftJustified(textColumn) + text.join(nextLine);
}

} // namespace

QString settingsHelp() {
    QStringList lines;
    for (const Setting& each : settingsList()) {
        if (each.isForUsers()) {
            lines.append(helpOf(each));
        }
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace quorvane
