#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace quorvane {

/// Who the process is to the rights store. An opaque value that lives as long as it is used.
class AuthorizationRef {
  public:
    virtual ~AuthorizationRef() = default;
};

/// The machine's store of rights: which commands of the helper need whose consent. Main thread
/// only, unless said otherwise.
class Authorization {
  public:
    /// Length of an external form, in bytes.
    static constexpr int externalFormLength = 32;

    enum class RightStatus { Exists, Missing, Error };

    virtual ~Authorization() = default;

    /// A reference without any right, or null on failure.
    [[nodiscard]] virtual std::unique_ptr<AuthorizationRef> create() = 0;

    /// The reference in a form that another process can take: exactly `externalFormLength` bytes.
    [[nodiscard]] virtual std::optional<QByteArray> externalForm(const AuthorizationRef& ref) = 0;

    [[nodiscard]] virtual RightStatus right(const QString& name) = 0;

    /// Creates the right. `rule` is "allow" or "authenticate-admin"; `table` names the table in
    /// which the description is translated. Returns whether it was created.
    virtual bool setRight(const AuthorizationRef& ref, const QString& name, const QString& rule,
                          const QString& description, const QString& table) = 0;

    /// Starts a tool as the administrator, by its absolute path and its arguments, never through a
    /// shell. Returns 0 when it was started, else the platform's error. Does not wait for it: the
    /// user may be asked for a password, and whether the tool succeeds is not told. Any thread.
    virtual int executeWithPrivileges(const AuthorizationRef& ref, const QString& tool,
                                      const QStringList& arguments) = 0;
};

} // namespace quorvane
