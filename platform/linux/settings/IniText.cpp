#include "platform/linux/settings/IniText.h"

#include <QFile>
#include <QLocale>
#include <QSettings>
#include <QUrl>

#include <array>
#include <cerrno>
#include <charconv>
#include <sys/mman.h>
#include <unistd.h>

namespace quorvane {

namespace {

bool isText(const QByteArray& bytes) {
    return bytes.isValidUtf8() && !bytes.contains('\0');
}

// A file in memory: QSettings reads only from paths, and what is parsed need not be on any disk.
class MemoryFile {
  public:
    explicit MemoryFile(const QByteArray& bytes) {
        const int descriptor = ::memfd_create("settings", MFD_CLOEXEC);
        if (descriptor < 0) {
            error_ = qt_error_string(errno);
            return;
        }
        if (!file_.open(descriptor, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle) ||
            file_.write(bytes) != bytes.size() || !file_.flush()) {
            error_ = file_.errorString();
        } else if (!QFile::exists(path())) {
            error_ = QStringLiteral("/proc is not mounted");
        }
    }

    [[nodiscard]] QString error() const { return error_; }

    [[nodiscard]] QString path() const {
        return QStringLiteral("/proc/self/fd/%1").arg(file_.handle());
    }

    void clear() { file_.resize(0); }

  private:
    QFile file_;
    QString error_;
};

// QVariant would turn the float first into a double: 0.699999988079071 for 0.7.
QString textOfFloat(float number) {
    // The longest is a sign, "0.", 45 zeros of the smallest numbers and 9 digits.
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                   std::chars_format::fixed);
    return QString::fromLatin1(buffer.data(), end.ptr - buffer.data());
}

// QSettings would remove the keys "key/..." as well.
void removeOnly(QSettings& settings, const QString& key) {
    QVariantMap others;
    settings.beginGroup(key);
    const QStringList names = settings.allKeys();
    for (const QString& name : names) {
        others.insert(key + QLatin1Char('/') + name, settings.value(name));
    }
    settings.endGroup();
    settings.remove(key);
    for (auto other = others.cbegin(); other != others.cend(); ++other) {
        settings.setValue(other.key(), other.value());
    }
}

} // namespace

IniText::Parsed IniText::parse(const QByteArray& text) {
    if (!isText(text)) {
        return {Outcome::Malformed, {}, {}};
    }
    MemoryFile file(text);
    if (!file.error().isEmpty()) {
        return {Outcome::Failed, {}, file.error()};
    }
    QSettings settings(file.path(), QSettings::IniFormat);
    Parsed result{Outcome::Parsed, {}, {}};
    // Sections are parsed on demand: only after this does the status tell of all of them.
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys) {
        if (const auto value = textOf(settings.value(key))) {
            result.values.insert(key, *value);
        }
    }
    if (settings.status() == QSettings::FormatError) {
        result = {Outcome::Malformed, {}, {}};
    } else if (settings.status() != QSettings::NoError) {
        result = {Outcome::Failed, {}, QStringLiteral("QSettings cannot read it")};
    }
    // QSettings keeps what it read by path, and the next file in memory may get the same one; of
    // an empty file it keeps nothing.
    file.clear();
    settings.sync();
    return result;
}

std::optional<QString> IniText::edit(const QString& path, const QString& key,
                                     const std::optional<QString>& value) {
    QSettings settings(path, QSettings::IniFormat);
    if (value) {
        settings.setValue(key, *value);
    } else {
        removeOnly(settings, key);
    }
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        return QStringLiteral("its new contents cannot be written beside it");
    }
    return std::nullopt;
}

std::optional<QString> IniText::textOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Float:
        return textOfFloat(value.toFloat());
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest);
    case QMetaType::QUrl:
        return QString::fromLatin1(value.toUrl().toEncoded());
    case QMetaType::QStringList:
        return value.toStringList().join(QLatin1Char(','));
    default:
        break;
    }
    if (!value.isValid() || !value.canConvert<QString>()) {
        return std::nullopt;
    }
    return value.toString();
}

} // namespace quorvane
