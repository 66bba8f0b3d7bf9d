#include "modules/ModuleList.h"

#include "modules/BrightnessModule.h"

namespace quorvane {

// The order is what the user sees happen: first what he notices and what saves at once, the
// processor last, because switching it may wait for the helper. A module that is added goes to its
// place in this row:
//   brightness, top apps, services, browsers, idle applications, turbo.
ModuleList makeModules() {
    ModuleList modules;
    modules.push_back(makeModule<BrightnessModule>());
    return modules;
}

} // namespace quorvane
