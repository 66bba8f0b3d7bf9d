#pragma once

#include "apps/helper/Driver.h"
#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QSet>

#include <optional>

namespace quorvane {

/// The "power-saver" profile of the machine's power-profiles service, by a hold: the service itself
/// goes back to the user's profile when the hold is released or its holder ends, however that
/// comes. When the user chooses a profile himself meanwhile, the service drops the hold and it is
/// not taken again. A service that restarts gets the hold anew. One that cannot be started, because
/// an administrator has masked it, counts as missing until it shows up.
class PowerProfilesHold final : public QObject, public Driver {
    Q_OBJECT

  public:
    explicit PowerProfilesHold(const QDBusConnection& bus);

    [[nodiscard]] QString name() const override;
    [[nodiscard]] bool probe() const override;
    void engage(const Reported& reported) override;
    void release(const Reported& reported) override;

  private Q_SLOTS:
    void profileReleased(uint cookie);

  private:
    [[nodiscard]] QString availableService() const;
    void ask(const Reported& reported);
    void appeared(const QString& service);
    void held(const BusAnswer& answer, const Reported& reported);
    void giveBack(const QString& service, uint cookie, const BusCalls::Answered& answered);

    QDBusConnection bus_;
    BusCalls calls_;
    QDBusServiceWatcher watcher_;
    QSet<QString> unstartable_;
    QString service_; ///< the one of its names that is used; empty: not engaged
    std::optional<uint> cookie_;
    bool isWanted_ = false; ///< it was held, and nobody has ended that
    int asked_ = 0; ///< grows with each request; the answer to an earlier one no longer counts
};

} // namespace quorvane
