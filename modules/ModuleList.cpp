#include "modules/ModuleList.h"

#include "core/SharedInstances.h"
#include "modules/AppNapModule.h"
#include "modules/BrightnessModule.h"
#include "modules/BrowserModule.h"

namespace quorvane {

// The order is what the user sees happen: first what he notices and what saves at once, the
// processor last, because switching it may wait for the helper. A module that is added goes to its
// place in this row:
//   brightness, top apps, services, browsers, idle applications, turbo.
ModuleList makeModules() {
    ModuleList modules;
    modules.push_back(makeModule<BrightnessModule>());
    modules.push_back(makeModule<BrowserModule>());
    modules.push_back(SharedInstances::share<AppNapModule>());
    return modules;
}

} // namespace quorvane
