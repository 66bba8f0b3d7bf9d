#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QHash>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

namespace quorvane {

/// An object of this program on a bus, with one interface whose properties are read-only. A call
/// whose arguments are of other types than the interface says, or that asks for something that is
/// not there, gets an error. Main thread only.
class ExportedObject : public QDBusVirtualObject {
  public:
    /// It is there as long as this object lives. `description` is the interface as introspection
    /// shows it.
    ExportedObject(const QDBusConnection& bus, QString path, QLatin1String interface,
                   QLatin1String description);
    ~ExportedObject() override;
    ExportedObject(const ExportedObject&) = delete;
    ExportedObject& operator=(const ExportedObject&) = delete;

    /// False without a bus, and where the path is already another object's.
    [[nodiscard]] bool isExported() const { return isExported_; }

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override;

  protected:
    /// Gives the reply.
    using Method = std::function<QDBusMessage(const QDBusMessage& call)>;

    /// Replies by itself, once, when it can.
    using DeferredMethod = std::function<void(const QDBusMessage& call)>;

    /// `signature` is the one of the arguments.
    void addMethod(QLatin1String name, QLatin1String signature, Method method);
    void addDeferredMethod(QLatin1String name, QLatin1String signature, DeferredMethod method);
    void addProperty(QLatin1String name, const std::function<QVariant()>& read);

    void emitSignal(QLatin1String name, const QVariantList& arguments = {});

  private:
    struct ExportedMethod {
        QString signature;
        std::function<std::optional<QDBusMessage>(const QDBusMessage& call)> method;
    };

    [[nodiscard]] std::optional<QDBusMessage> answer(const QDBusMessage& call) const;
    [[nodiscard]] std::optional<QDBusMessage> callMethod(const QDBusMessage& call) const;
    [[nodiscard]] QDBusMessage accessProperties(const QDBusMessage& call) const;
    [[nodiscard]] QDBusMessage getProperty(const QDBusMessage& call, const QString& name) const;
    [[nodiscard]] QDBusMessage refuseToSet(const QDBusMessage& call, const QString& name) const;
    [[nodiscard]] QVariantMap allProperties() const;

    QDBusConnection bus_;
    QString path_;
    QString interface_;
    QLatin1String description_;
    QHash<QString, ExportedMethod> methods_;
    QHash<QString, std::function<QVariant()>> properties_;
    bool isExported_;
};

} // namespace quorvane
