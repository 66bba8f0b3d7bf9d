#include "battery/BatteryLog.h"

#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Platform.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <optional>
#include <utility>

namespace quorvane {

namespace {

const QString header = QStringLiteral("Quorvane log file:");

std::optional<QString> decoded(const QByteArray& data) {
    QStringDecoder decoder(QStringConverter::Utf16);
    QString text = decoder.decode(data);
    if (decoder.hasError() || data.size() % 2 != 0) {
        return std::nullopt;
    }
    return text;
}

QByteArray encoded(const QString& text) {
    QStringEncoder encoder(QStringConverter::Utf16, QStringConverter::Flag::WriteBom);
    return encoder.encode(text);
}

} // namespace

BatteryLog::BatteryLog(QString path) : path_(std::move(path)) {}

void BatteryLog::write(const QString& message) {
    Files& files = platform().files();
    Files::Contents file = files.read(path_);
    const std::optional<QString> text = file.data ? decoded(*file.data) : std::nullopt;
    if (file.data && !text) {
        file.error = QStringLiteral("%1: the text is not UTF-16").arg(path_);
    }
    if (!text) {
        log(QStringLiteral("Error while loading from file (%1) ").arg(file.error));
        if (file.exists && !files.keepAside(path_)) {
            return;
        }
    }
    const QString start = text && !text->isEmpty() ? *text : header;
    files.writeAtomically(path_, encoded(start + QLatin1Char('\n') + message));
}

} // namespace quorvane
