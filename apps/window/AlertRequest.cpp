#include "apps/window/AlertRequest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace quorvane {

namespace {

AlertRequest refused(const QString& error) {
    return {std::nullopt, error};
}

QStringList textsOf(const QJsonArray& array) {
    QStringList texts;
    for (const auto& value : array) {
        texts += value.toString();
    }
    return texts;
}

bool areTexts(const QJsonArray& array) {
    return std::all_of(array.begin(), array.end(),
                       [](const QJsonValue& value) { return value.isString(); });
}

} // namespace

AlertRequest AlertRequest::parse(const QByteArray& json) {
    QJsonParseError trouble;
    const QJsonDocument document = QJsonDocument::fromJson(json, &trouble);
    if (trouble.error != QJsonParseError::NoError) {
        return refused(QStringLiteral("not JSON at byte %1: %2")
                           .arg(trouble.offset)
                           .arg(trouble.errorString()));
    }
    if (!document.isObject()) {
        return refused(QStringLiteral("not a JSON object"));
    }
    const QJsonObject object = document.object();
    const QJsonValue message = object.value(QLatin1String("messageText"));
    const QJsonValue information = object.value(QLatin1String("informativeText"));
    const QJsonArray buttons = object.value(QLatin1String("buttons")).toArray();
    const QJsonValue safe = object.value(QLatin1String("safeButton"));
    if (!message.isString()) {
        return refused(QStringLiteral("\"messageText\" is not a text"));
    }
    if (!information.isString() && !information.isUndefined()) {
        return refused(QStringLiteral("\"informativeText\" is not a text"));
    }
    if (buttons.isEmpty() || !areTexts(buttons)) {
        return refused(QStringLiteral("\"buttons\" is not a list of one or more texts"));
    }
    const int safeButton = safe.isUndefined() ? 0 : safe.toInt(-1);
    if (safeButton < 0 || safeButton >= buttons.size()) {
        return refused(QStringLiteral("\"safeButton\" is not the index of a button"));
    }
    return {Alert{message.toString(), information.toString(), textsOf(buttons), safeButton}, {}};
}

} // namespace quorvane
