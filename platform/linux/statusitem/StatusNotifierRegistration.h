#pragma once

#include "platform/Log.h"
#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

namespace quorvane {

/// Makes the status item known to the desktop's bar, and to every bar that comes later: hosts learn
/// of items from whoever owns org.kde.StatusNotifierWatcher. The item has a name on the bus of its
/// own, because hosts take an item away when its name goes. Nothing here blocks. Main thread only.
class StatusNotifierRegistration final : public QObject {
    Q_OBJECT

  public:
    /// Begins at the next turn of the main loop.
    StatusNotifierRegistration(const QDBusConnection& bus, LogSink& log);
    ~StatusNotifierRegistration() override;
    StatusNotifierRegistration(const StatusNotifierRegistration&) = delete;
    StatusNotifierRegistration& operator=(const StatusNotifierRegistration&) = delete;

  private:
    void requestName();
    void lookUpWatcher();
    void changeWatcher(const QString& owner);
    void registerItem();
    void reportNoWatcher();

    QDBusConnection bus_;
    BusCalls calls_;
    LogSink& log_;
    QDBusServiceWatcher ownerChanges_;
    QString itemName_;     ///< what the item is registered by; empty until the bus has given it
    QString watcherOwner_; ///< a unique name, or empty
    bool hasReported_ = false;
};

} // namespace quorvane
