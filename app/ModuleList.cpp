#include "app/ModuleList.h"

#include "core/SharedInstances.h"
#include "modules/AppNapModule.h"
#include "modules/BrightnessModule.h"
#include "modules/BrowserModule.h"
#include "modules/TurboModule.h"

#include <utility>

namespace quorvane {

// The order is what the user sees happen: first what he notices and what saves at once, the
// processor last, because switching it may wait for the helper. A module that is added goes to its
// place in this row:
//   brightness, top apps, services, browsers, idle applications, turbo.
ModuleList makeModules() {
    // Made first all the same: what an earlier run has left of the turbo is put right before
    // anything else is looked at.
    std::unique_ptr<TurboModule> turbo = makeModule<TurboModule>();
    ModuleList modules;
    modules.push_back(makeModule<BrightnessModule>());
    modules.push_back(makeModule<BrowserModule>());
    modules.push_back(SharedInstances::share<AppNapModule>());
    modules.push_back(std::move(turbo));
    return modules;
}

} // namespace quorvane
