#include "platform/linux/common/SysfsAttributes.h"

#include <QFile>

namespace quorvane {

std::optional<QString> sysfsText(const QString& folder, const char* attribute) {
    QFile file(folder + QLatin1Char('/') + QLatin1String(attribute));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    // The kernel gives out at most a page.
    constexpr qint64 page = 4096;
    const QString text = QString::fromUtf8(file.read(page)).trimmed();
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

std::optional<qlonglong> sysfsNumber(const QString& folder, const char* attribute) {
    const std::optional<QString> text = sysfsText(folder, attribute);
    bool isNumber = false;
    const qlonglong number = text ? text->toLongLong(&isNumber) : 0;
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace quorvane
