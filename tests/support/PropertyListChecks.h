#pragma once

#include "plist/PropertyList.h"
#include "tests/support/DescribeValue.h"

#include <gtest/gtest.h>

namespace quorvane::test {

inline QByteArray inPlist(const QByteArray& content) {
    return "<plist version=\"1.0\">" + content + "</plist>";
}

inline void expectRead(const QByteArray& xml, const QVariant& value) {
    const auto result = readPropertyList(xml);
    EXPECT_EQ(result.error.toStdString(), "") << xml.left(300).constData();
    ASSERT_TRUE(result.value);
    EXPECT_EQ(describe(*result.value), describe(value)) << xml.left(300).constData();
}

/// Also that the reason given contains `reason`.
inline void expectRefused(const QByteArray& xml, const char* reason) {
    const auto result = readPropertyList(xml);
    EXPECT_FALSE(result.value) << xml.left(300).constData();
    EXPECT_FALSE(result.error.isEmpty()) << xml.left(300).constData();
    EXPECT_TRUE(result.error.contains(QLatin1String(reason)))
        << xml.left(300).constData() << ": " << qPrintable(result.error);
}

/// Written and read, it is the same.
inline void expectSurvives(const QVariant& value) {
    const auto xml = writePropertyList(value);
    ASSERT_TRUE(xml) << describe(value);
    expectRead(*xml, value);
}

} // namespace quorvane::test
