#include "helperclient/Common.h"

#include "core/Localized.h"
#include "helperclient/Requirement.h"
#include "platform/Authorization.h"
#include "platform/Platform.h"

namespace quorvane {

namespace {

const QString nameKey = QStringLiteral("authRightName");
const QString defaultKey = QStringLiteral("authRightDefault");
const QString descriptionKey = QStringLiteral("authRightDescription");
const QString localisationTable = QStringLiteral("Common");

template <class T>
bool isA(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<T>();
}

} // namespace

const QVariantMap& Common::commandInfo() {
    // The doubled dot belongs to the name: the right is registered and looked up with it.
    static const QVariantMap table{
        {QStringLiteral("getTaskPowerMetricsWithReply:"),
         QVariantMap{
             {nameKey, QStringLiteral("com.TarnwickStudios.quorvane..startWebService")},
             {defaultKey, QStringLiteral("allow")},
             {descriptionKey, localized("BKTV is trying to start its web service.")},
         }},
    };
    return table;
}

std::optional<QString> Common::authorizationRightForCommand(const QString& command) {
    const auto entry = commandInfo().constFind(command);
    if (entry == commandInfo().constEnd()) {
        return std::nullopt;
    }
    return entry->toMap().value(nameKey).toString();
}

void Common::enumerateRightsUsingBlock(const RightBlock& block) {
    enumerateRights(commandInfo(), block);
}

void Common::enumerateRights(const QVariantMap& table, const RightBlock& block) {
    for (const QVariant& entry : table) {
        require(isA<QVariantMap>(entry), "[commandDict isKindOfClass:[NSDictionary class]]");
        const QVariantMap right = entry.toMap();
        require(isA<QString>(right.value(nameKey)),
                "[authRightName isKindOfClass:[NSString class]]");
        require(right.contains(defaultKey), "authRightDefault != nil");
        require(isA<QString>(right.value(descriptionKey)),
                "[authRightDesc isKindOfClass:[NSString class]]");
        block(right.value(nameKey).toString(), right.value(defaultKey).toString(),
              right.value(descriptionKey).toString());
    }
}

void Common::setupAuthorizationRights(const AuthorizationRef* authRef) {
    require(authRef != nullptr, "authRef != NULL");
    enumerateRightsUsingBlock(
        [authRef](const QString& name, const QString& rule, const QString& description) {
            Authorization& rights = platform().authorization();
            if (rights.right(name) != Authorization::RightStatus::Missing) {
                return;
            }
            require(rights.setRight(*authRef, name, rule, description, localisationTable),
                    "blockErr == errAuthorizationSuccess");
        });
}

} // namespace quorvane
