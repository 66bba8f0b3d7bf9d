#pragma once

#include "apps/helper/ExtensionBundles.h"
#include "apps/helper/LoadedList.h"
#include "apps/helper/Outcome.h"

#include <QList>
#include <QObject>

namespace quorvane {

class Holders;
class LogSink;
class PowerSwitch;
class RunTimeConfiguration;

/// Loads and unloads the two extensions. Both act on the turbo switch: DisableTurboBoost keeps
/// turbo off while it is loaded, CPUTune does what the run-time configuration says. An extension is
/// loaded for the callers that have loaded it, and unloaded when the last of them unloads it or
/// leaves the bus. Main thread only.
class Extensions final : public QObject {
  public:
    /// The references must outlive this.
    Extensions(ExtensionBundles bundles, LoadedList list, PowerSwitch& turbo,
               RunTimeConfiguration& configuration, Holders& holders, LogSink& log);

    /// `path` is what a caller has sent, `caller` its unique name on the bus.
    void load(const QString& path, const QString& caller, const Reported& reported);
    void unload(const QString& path, const QString& caller, const Reported& reported);

    /// Nothing is loaded any more, whatever the list says that this or a dead run has left.
    void forgetAll();

  private:
    void abandon(const QString& name);
    void start(const Extension& extension, const Reported& reported);
    void stop(const QString& name, const Reported& reported);
    void follow(std::optional<char> setting);
    void writeList();
    void setLoaded(const Extension& extension, bool isLoaded);

    ExtensionBundles bundles_;
    LoadedList list_;
    PowerSwitch& turbo_;
    RunTimeConfiguration& configuration_;
    Holders& holders_;
    LogSink& log_;
    QList<Extension> loaded_;
};

} // namespace quorvane
