#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace quorvane {

class AuthorizationRef;

/// The rights that guard the helper's commands, and their registration in the machine's rights
/// store.
class Common {
  public:
    using RightBlock = std::function<void(const QString& name, const QString& defaultRule,
                                          const QString& description)>;

    /// By command name ("getTaskPowerMetricsWithReply:"): "authRightName", "authRightDefault"
    /// ("allow" or "authenticate-admin") and "authRightDescription" (translated). Built once. Any
    /// thread.
    static const QVariantMap& commandInfo();

    /// The name of the right that guards the command, or nothing when the table has none.
    static std::optional<QString> authorizationRightForCommand(const QString& command);

    /// Calls the block for every right. A malformed entry ends the process.
    static void enumerateRightsUsingBlock(const RightBlock& block);
    static void enumerateRights(const QVariantMap& table, const RightBlock& block);

    /// Creates the rights that the store does not have; existing ones stay as they are, whatever
    /// their rule. A null reference or a failure to create ends the process. Main thread only.
    static void setupAuthorizationRights(const AuthorizationRef* authRef);
};

} // namespace quorvane
