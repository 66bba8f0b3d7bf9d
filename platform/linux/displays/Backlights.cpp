#include "platform/linux/displays/Backlights.h"

#include "platform/linux/common/SysfsAttributes.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

namespace quorvane {

namespace {

std::optional<int> rawNumber(const QString& folder, const char* attribute) {
    const std::optional<qlonglong> number = sysfsNumber(folder, attribute);
    return number && *number >= 0 && *number <= std::numeric_limits<int>::max()
               ? std::optional(static_cast<int>(*number))
               : std::nullopt;
}

int rank(const QString& folder) {
    static const QStringList types{QStringLiteral("firmware"), QStringLiteral("platform"),
                                   QStringLiteral("raw")};
    const auto index = types.indexOf(sysfsText(folder, "type").value_or(QString()));
    return static_cast<int>(index < 0 ? types.size() : index);
}

} // namespace

Backlights::Backlights(const QString& sysfsRoot)
    : class_(sysfsRoot + QStringLiteral("/class/backlight")) {}

QStringList Backlights::names() const {
    QStringList names = QDir(class_).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    names.removeIf([this](const QString& name) { return !maximum(name) || !raw(name); });
    std::stable_sort(names.begin(), names.end(), [this](const QString& one, const QString& two) {
        return rank(folder(one)) < rank(folder(two));
    });
    return names;
}

std::optional<int> Backlights::maximum(const QString& name) const {
    const std::optional<int> maximum = rawNumber(folder(name), "max_brightness");
    return maximum && *maximum > 0 ? maximum : std::nullopt;
}

std::optional<int> Backlights::raw(const QString& name) const {
    const QString device = folder(name);
    const std::optional<int> asked = rawNumber(device, "brightness");
    return asked ? asked : rawNumber(device, "actual_brightness");
}

int Backlights::setRaw(const QString& name, int raw) const {
    const int file =
        ::open(QFile::encodeName(brightnessFile(name)).constData(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (file < 0) {
        return errno;
    }
    const QByteArray text = QByteArray::number(raw) + '\n';
    const bool isWritten = ::write(file, text.constData(), static_cast<std::size_t>(text.size())) ==
                           static_cast<ssize_t>(text.size());
    const int error = isWritten ? 0 : (errno != 0 ? errno : EIO);
    ::close(file);
    return error;
}

QString Backlights::brightnessFile(const QString& name) const {
    return folder(name) + QStringLiteral("/brightness");
}

QString Backlights::folder(const QString& name) const {
    return class_ + QLatin1Char('/') + name;
}

} // namespace quorvane
