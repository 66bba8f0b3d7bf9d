#include "tests/unit/mode/TestModules.h"

#include "modules/BrightnessModule.h"

namespace quorvane::test {

ModuleList completeModules() {
    CountingModule::order().clear();
    ModuleList modules;
    modules.push_back(makeModule<BrightnessModule>());
    modules.push_back(makeModule<TopAppsModule>());
    modules.push_back(makeModule<ServicesModule>());
    modules.push_back(makeModule<BrowserModule>());
    modules.push_back(makeModule<AppNapModule>());
    modules.push_back(makeModule<TurboModule>());
    return modules;
}

} // namespace quorvane::test
