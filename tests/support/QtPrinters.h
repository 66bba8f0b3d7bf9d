#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// GoogleTest would print Qt's strings as lists of numbers. It looks for these beside the types.

inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
