#pragma once

#include "apps/helper/Driver.h"

#include <QObject>
#include <QQueue>
#include <QSet>

#include <memory>
#include <vector>

namespace quorvane {

/// Something of the machine that several parties may want switched over at the same time: it is as
/// long as one of them does. Works through the first of its drivers that the machine has. Requests
/// are carried out one after the other. Main thread only.
class PowerSwitch final : public QObject {
  public:
    using Drivers = std::vector<std::unique_ptr<Driver>>;

    /// What outcomes say.
    struct Wording {
        QString on;      ///< it is switched over
        QString off;     ///< it is as it was found
        QString stillOn; ///< it is switched over for somebody else
        QString absent;  ///< this machine has no such switch
    };

    PowerSwitch(Wording wording, Drivers drivers);

    /// Whether the machine has a driver for it.
    [[nodiscard]] bool isAvailable() const;

    void hold(const QString& party, const Reported& reported);
    void release(const QString& party, const Reported& reported);

    /// Nobody wants it any more. For the end of the program.
    void releaseAll();

    [[nodiscard]] bool isHeld() const { return !parties_.isEmpty(); }

  private:
    struct Request {
        bool isHold = false;
        QString party;
        Reported reported;
    };

    void add(const Request& request);
    void work();
    void carryOut(const Request& request);
    void carryOutHold(const Request& request);
    void carryOutRelease(const Request& request);
    void finish(const Request& request, const Outcome& outcome);
    [[nodiscard]] Driver* findDriver() const;

    Wording wording_;
    Drivers drivers_;
    Driver* engaged_ = nullptr;
    QSet<QString> parties_;
    QQueue<Request> requests_;
    bool isBusy_ = false;
};

} // namespace quorvane
