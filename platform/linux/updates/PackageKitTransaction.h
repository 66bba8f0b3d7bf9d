#pragma once

#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

namespace quorvane {

/// One question to PackageKit, from its creation to its end. Main thread only.
class PackageKitTransaction : public QObject {
    Q_OBJECT

  public:
    /// The bus has to be connected.
    explicit PackageKitTransaction(const QDBusConnection& systemBus, QObject* parent = nullptr);

    /// Creates the transaction and calls `method` on it. Once.
    void run(const QString& method, const QVariantList& arguments);

    /// The name of PackageKit on the system bus.
    [[nodiscard]] static QString serviceName();

  Q_SIGNALS:
    /// Once, later. `packages` are the identifiers that were told, "name;version;arch;data";
    /// `error` is empty when all went well.
    void ended(const QStringList& packages, const QString& error);

    /// Once, later, instead: the service is not there and cannot be started.
    void serviceIsAbsent();

  private:
    Q_SLOT void packageTold(const QDBusMessage& signal);
    Q_SLOT void errorTold(const QDBusMessage& signal);
    Q_SLOT void finished(const QDBusMessage& signal);

    void created(const BusAnswer& answer);
    void subscribe();
    void end(const QString& error);

    QDBusConnection bus_;
    BusCalls calls_;
    QDBusServiceWatcher watcher_;
    QTimer patience_;
    QString path_;
    QString method_;
    QVariantList arguments_;
    QStringList packages_;
    QString error_;
    bool hasEnded_ = false;
};

} // namespace quorvane
