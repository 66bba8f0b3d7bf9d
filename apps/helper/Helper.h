#pragma once

#include "apps/helper/AttributeDriver.h"
#include "apps/helper/Authority.h"
#include "apps/helper/Extensions.h"
#include "apps/helper/HelperCommands.h"
#include "apps/helper/HelperObject.h"
#include "apps/helper/HelperPaths.h"
#include "apps/helper/Holders.h"
#include "apps/helper/KernelAttributes.h"
#include "apps/helper/PowerSwitch.h"
#include "apps/helper/RunTimeConfiguration.h"
#include "apps/helper/TaskSampler.h"
#include "platform/linux/common/PuttingBackJournal.h"

#include <QTimer>

#include <chrono>

namespace quorvane {

/// The helper: everything that it consists of, and its life. It takes its name on the bus once it
/// is ready, and leaves when nothing has been asked of it for a while and nothing is held. Main
/// thread only.
class Helper final : public QObject {
    Q_OBJECT

  public:
    struct Options {
        HelperPaths paths;
        std::chrono::milliseconds idleLimit = std::chrono::minutes(1);
        RunTimeConfiguration::Users users = usersInFront;
    };

    /// `log` must outlive this.
    Helper(const QDBusConnection& bus, const Options& options, LogSink& log);
    ~Helper() override;
    Helper(const Helper&) = delete;
    Helper& operator=(const Helper&) = delete;

    /// Puts back what a dead run has left changed. First thing of all.
    void putBackLeftovers();

    /// Takes the name on the bus. False, with a log line, when that is not possible.
    [[nodiscard]] bool serve();

    /// Puts everything back that is held now. For the end.
    void putEverythingBack();

  Q_SIGNALS:
    /// It has given up its name, or the bus has gone, and is to end.
    void left();

  private:
    [[nodiscard]] PowerSwitch::Drivers turboDrivers();
    [[nodiscard]] PowerSwitch::Drivers lowPowerDrivers();
    template <class D>
    void addAttributeDriver(PowerSwitch::Drivers& drivers);

    void considerLeaving();
    void leave();

    QDBusConnection bus_;
    LogSink& log_;
    KernelAttributes attributes_;
    PuttingBackJournal journal_;
    QList<AttributeDriver*> attributeDrivers_; ///< owned by the switches
    PowerSwitch turbo_;
    PowerSwitch lowPower_;
    RunTimeConfiguration configuration_;
    Holders holders_;
    Extensions extensions_;
    TaskSampler sampler_;
    Authority authority_;
    HelperCommands commands_;
    HelperObject object_;
    QTimer idle_;
};

/// Makes the helper's run-time folder, or sees to it that one that is there is its own alone.
/// Returns the error, or nothing.
[[nodiscard]] std::optional<QString> prepareRuntimeFolder(const QString& path);

} // namespace quorvane
