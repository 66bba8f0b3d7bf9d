#include "plist/PropertyListScalars.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace quorvane {

namespace {

/// What is no Latin-1 becomes "?", which no scalar may hold.
QByteArray trimmedLatin1(const QString& text) {
    return text.toLatin1().trimmed();
}

/// A number's text without white space, taken apart. Holds the bytes that `digits` points into.
class NumberText {
  public:
    explicit NumberText(const QString& text) : bytes_(trimmedLatin1(text)) {
        if (bytes_.startsWith('-') || bytes_.startsWith('+')) {
            isNegative_ = bytes_.startsWith('-');
            bytes_.remove(0, 1);
        }
    }

    [[nodiscard]] bool isNegative() const { return isNegative_; }

    [[nodiscard]] std::string_view digits() const {
        return {bytes_.constData(), static_cast<std::size_t>(bytes_.size())};
    }

  private:
    QByteArray bytes_;
    bool isNegative_ = false;
};

/// The whole of `text` as a number; `format` is the base of an integer, the format of a real.
template <typename Number, typename Format>
std::optional<Number> parseWhole(std::string_view text, Format format) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, format);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<QVariant> integerFromText(const QString& text) {
    const NumberText number(text);
    std::string_view digits = number.digits();
    const bool isHexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    if (isHexadecimal) {
        digits.remove_prefix(2);
    }
    const auto magnitude = parseWhole<quint64>(digits, isHexadecimal ? 16 : 10);
    if (!magnitude) {
        return std::nullopt;
    }
    constexpr auto maximum = static_cast<quint64>(std::numeric_limits<qint64>::max());
    if (!number.isNegative()) {
        return *magnitude <= maximum ? QVariant(static_cast<qlonglong>(*magnitude))
                                     : QVariant(qulonglong{*magnitude});
    }
    if (*magnitude > maximum + 1) {
        return std::nullopt;
    }
    return QVariant(static_cast<qlonglong>(-*magnitude));
}

std::optional<QVariant> realFromText(const QString& text) {
    const NumberText number(text);
    const std::string_view digits = number.digits();
    // A second sign and "nan(...)" would do for from_chars.
    if (digits.find('(') != std::string_view::npos || digits.starts_with('-')) {
        return std::nullopt;
    }
    const auto magnitude = parseWhole<double>(digits, std::chars_format::general);
    if (!magnitude) {
        return std::nullopt;
    }
    return QVariant(number.isNegative() ? -*magnitude : *magnitude);
}

std::optional<QVariant> dateFromText(const QString& text) {
    // Qt reads more forms than this one, and 24:00:00 as the next day; only this one comes back.
    const auto trimmed = QString::fromLatin1(trimmedLatin1(text));
    const auto date = QDateTime::fromString(trimmed, Qt::ISODate);
    const bool isExact = date.timeSpec() == Qt::UTC && dateToText(date) == trimmed;
    return isExact ? std::optional(QVariant(date)) : std::nullopt;
}

std::optional<QVariant> dataFromText(const QString& text) {
    QByteArray base64 = text.toLatin1();
    base64.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    // Qt takes a missing end for padding left out.
    if (base64.size() % 4 != 0) {
        return std::nullopt;
    }
    const auto result = QByteArray::fromBase64Encoding(
        base64, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional(QVariant(result.decoded)) : std::nullopt;
}

QString realToText(double value) {
    if (std::isnan(value)) {
        return QStringLiteral("nan");
    }
    // Not QString::number, which drops the sign of a negative zero.
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return QString::fromLatin1(text.data(), result.ptr - text.data());
}

std::optional<QString> dateToText(const QDateTime& value) {
    const QString text = value.toUTC().toString(Qt::ISODate);
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace quorvane
