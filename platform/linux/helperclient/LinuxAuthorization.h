#pragma once

#include "platform/Authorization.h"

namespace quorvane {

/// Rights are polkit's actions. They come to the machine with the helper, as files of root's that
/// no program of a user can add to, and the helper itself asks polkit about every caller: so to
/// this side no right is ever missing. What an administrator has ruled about them is never touched.
class LinuxAuthorization final : public Authorization {
  public:
    /// The error of a tool that could not be started.
    static constexpr int toolExecuteFailure = -60031;

    /// `pkexec` is polkit's program for running another one as root.
    explicit LinuxAuthorization(QString pkexec = QStringLiteral("/usr/bin/pkexec"));

    [[nodiscard]] std::unique_ptr<AuthorizationRef> create() override;

    /// Nothing needs it here: who a caller is, the helper is told by the bus.
    [[nodiscard]] std::optional<QByteArray> externalForm(const AuthorizationRef& ref) override;

    [[nodiscard]] RightStatus right(const QString& name) override;
    bool setRight(const AuthorizationRef& ref, const QString& name, const QString& rule,
                  const QString& description, const QString& table) override;

    /// In a session of its own with nothing of this program's open, asking for the password through
    /// the desktop. Returns `toolExecuteFailure` where polkit is not installed.
    int executeWithPrivileges(const AuthorizationRef& ref, const QString& tool,
                              const QStringList& arguments) override;

  private:
    QString pkexec_;
};

} // namespace quorvane
