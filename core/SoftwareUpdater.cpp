#include "core/SoftwareUpdater.h"

#include "core/Localized.h"
#include "core/NotificationDelivery.h"
#include "core/SharedInstances.h"
#include "platform/Platform.h"

namespace quorvane {

namespace {

// Long enough to be read by somebody who has just clicked and looks elsewhere meanwhile.
constexpr Seconds resultInterval{15.0};

struct Words {
    QString title;
    QString text;
};

Words wordsFor(const UpdateStatus& status) {
    using Kind = UpdateStatus::Kind;
    switch (status.kind) {
    case Kind::UpToDate:
        return {localized("Quorvane is up to date"), {}};
    case Kind::Available:
    case Kind::Downloaded:
        return {filledIn(localized("Quorvane %@ is available"), {status.text}),
                localized("Install it with your system's software updates.")};
    case Kind::NoService:
        return {localized("Updates come with your system"),
                localized("Your distribution delivers updates of Quorvane.")};
    case Kind::NotPackaged:
        return {
            localized("This copy of Quorvane is not updated by your system"),
            localized("It was not installed from a package. Get a newer one where you got it.")};
    case Kind::Metered:
        return {localized("Not checked for updates"),
                localized("Your connection is metered. Try again on another one.")};
    case Kind::Failed:
        break;
    }
    return {localized("Checking for updates failed"), status.text};
}

} // namespace

SoftwareUpdater& SoftwareUpdater::sharedUpdater() {
    return SharedInstances::get<SoftwareUpdater>();
}

void SoftwareUpdater::setAutomaticallyChecksForUpdates(bool checks) {
    checks_ = checks;
    schedule();
}

void SoftwareUpdater::setAutomaticallyDownloadsUpdates(bool downloads) {
    downloads_ = downloads;
}

void SoftwareUpdater::setUpdateCheckInterval(Seconds interval) {
    interval_ = interval;
    schedule();
}

void SoftwareUpdater::schedule() {
    timer_.reset();
    if (checks_) {
        timer_ = platform().clock().schedule(interval_, Repeats::Yes,
                                             [this] { checkForUpdatesInBackground(); });
    }
}

void SoftwareUpdater::checkForUpdatesInBackground() {
    platform().updateService().look(downloads_ ? UpdateService::Download::Yes
                                               : UpdateService::Download::No,
                                    [](const UpdateStatus&) {});
}

void SoftwareUpdater::checkForUpdates() {
    platform().updateService().look(UpdateService::Download::No, [](const UpdateStatus& status) {
        const Words words = wordsFor(status);
        UserNotification notification;
        notification.title = words.title;
        notification.informativeText = words.text;
        deliverNotification(notification, resultInterval);
    });
}

} // namespace quorvane
