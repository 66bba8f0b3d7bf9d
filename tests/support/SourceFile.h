#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <gtest/gtest.h>

namespace quorvane::test {

/// What is in a file of the project, by its path from the project's folder.
inline QByteArray sourceFile(const QString& path) {
    QFile file(QStringLiteral(QUORVANE_SOURCE_DIR "/") + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

} // namespace quorvane::test
