#include "core/Words.h"

#include <QRegularExpression>

namespace quorvane {

QStringList words(const QString& text) {
    static const QRegularExpression whiteSpace(QStringLiteral("\\s"),
                                               QRegularExpression::UseUnicodePropertiesOption);
    return text.split(whiteSpace, Qt::SkipEmptyParts);
}

} // namespace quorvane
