#include "apps/window/AlertRequest.h"

#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

namespace quorvane {

TEST(AlertRequestTest, WholeRequest_IsRead) {
    const AlertRequest request = AlertRequest::parse(
        R"({"messageText": "Move?", "informativeText": "Für immer", "buttons": ["Yes", "No"],
            "safeButton": 1, "somethingNew": true})");
    ASSERT_TRUE(request.alert) << request.error.toStdString();
    EXPECT_EQ(request.alert->messageText, QStringLiteral("Move?"));
    EXPECT_EQ(request.alert->informativeText, QStringLiteral("Für immer"));
    EXPECT_EQ(request.alert->buttons, QStringList({QStringLiteral("Yes"), QStringLiteral("No")}));
    EXPECT_EQ(request.alert->safeButton, 1);
}

TEST(AlertRequestTest, InformationAndSafeButton_MayBeMissing) {
    const AlertRequest request =
        AlertRequest::parse(R"({"messageText": "Move?", "buttons": ["Yes"]})");
    ASSERT_TRUE(request.alert) << request.error.toStdString();
    EXPECT_EQ(request.alert->informativeText, QString());
    EXPECT_EQ(request.alert->safeButton, 0);
}

TEST(AlertRequestTest, FaultyRequests_AreRefusedWithAReason) {
    const QByteArray faulty[] = {
        "",
        "yes",
        "{\"messageText\": \"a\", \"buttons\": [\"b\"]",
        "[]",
        "null",
        "{}",
        R"({"messageText": 1, "buttons": ["b"]})",
        R"({"messageText": "a", "informativeText": 2, "buttons": ["b"]})",
        R"({"messageText": "a", "informativeText": null, "buttons": ["b"]})",
        R"({"messageText": "a"})",
        R"({"messageText": "a", "buttons": []})",
        R"({"messageText": "a", "buttons": "b"})",
        R"({"messageText": "a", "buttons": ["b", 3]})",
        R"({"messageText": "a", "buttons": ["b"], "safeButton": 1})",
        R"({"messageText": "a", "buttons": ["b"], "safeButton": -1})",
        R"({"messageText": "a", "buttons": ["b"], "safeButton": 0.5})",
        R"({"messageText": "a", "buttons": ["b"], "safeButton": "0"})",
        R"({"messageText": "a", "buttons": ["b"], "safeButton": null})",
    };
    for (const QByteArray& json : faulty) {
        const AlertRequest request = AlertRequest::parse(json);
        EXPECT_FALSE(request.alert) << json.toStdString();
        EXPECT_FALSE(request.error.isEmpty()) << json.toStdString();
        EXPECT_FALSE(request.error.contains(u'\n')) << json.toStdString();
    }
}

} // namespace quorvane
