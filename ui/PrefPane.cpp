#include "ui/PrefPane.h"

#include "core/Localized.h"
#include "core/QuorvanePrefs.h"
#include "core/UserDefaults.h"
#include "platform/Platform.h"
#include "platform/Windows.h"

namespace quorvane {

void PrefPane::openPrefPane() const {
    Alert alert;
    alert.messageText = localized("Quorvane's Settings");
    alert.informativeText =
        filledIn(localized("Change them in the file %@. Every change is applied at once, and "
                           "\"quorvane --help\" tells what can be set."),
                 {QuorvanePrefs::userDefaults().domain().location()});
    alert.buttons = {localized("Close")};
    platform().windows().activateIgnoringOtherApps();
    platform().windows().runModal(alert, [](int) {});
}

} // namespace quorvane
