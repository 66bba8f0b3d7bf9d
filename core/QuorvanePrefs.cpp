#include "core/QuorvanePrefs.h"

#include "core/DefaultsController.h"
#include "core/SharedInstances.h"
#include "core/UserDefaults.h"
#include "platform/Bundle.h"
#include "platform/Platform.h"
#include "platform/Settings.h"

#include <optional>
#include <utility>

namespace quorvane {

namespace {

// What belongs to the class as a whole. Each part is made when it is first asked for.
struct ClassState {
    std::optional<UserDefaults> standardStore;
    std::optional<UserDefaults> suiteStore;
    std::optional<DefaultsController> defaultsController;
    QuorvanePrefs::Observers observers;
};

ClassState& state() {
    return SharedInstances::get<ClassState>();
}

UserDefaults& openedOnce(std::optional<UserDefaults>& store, const QString& domain) {
    if (!store) {
        store.emplace(platform().settings().domain(domain));
    }
    return *store;
}

} // namespace

QString QuorvanePrefs::domainName() {
    return QStringLiteral("com.TarnwickStudios.quorvane");
}

UserDefaults& QuorvanePrefs::userDefaults() {
    const QString host = platform().bundle().identifier();
    if (host == domainName()) {
        return openedOnce(state().standardStore, host);
    }
    return openedOnce(state().suiteStore, domainName());
}

DefaultsController& QuorvanePrefs::defaultsController() {
    ClassState& shared = state();
    if (!shared.defaultsController) {
        shared.defaultsController.emplace(userDefaults());
    }
    return *shared.defaultsController;
}

bool QuorvanePrefs::setNumberValue(const QVariant& value, const QString& key) {
    return platform().settings().domain(domainName()).write(key, value);
}

bool QuorvanePrefs::setStringValue(const QVariant& value, const QString& key) {
    return setNumberValue(value, key);
}

const QuorvanePrefs::Observers& QuorvanePrefs::observers() {
    return state().observers;
}

void QuorvanePrefs::bindKey(const QString& key, ObservableObject& object,
                            const QString& defaultsKey) {
    auto made = std::make_unique<QuorvanePrefs>(defaultsKey);
    const QuorvanePrefs* binding = made.get();
    state().observers.push_back(std::move(made));
    object.observe(key, binding, [binding](const ObservableObject::Change& change) {
        binding->observeValue(change);
    });
    defaultsController().bind(object, key, defaultsKey);
}

QuorvanePrefs::QuorvanePrefs(QString prefsKey) : prefKey_(std::move(prefsKey)) {}

void QuorvanePrefs::observeValue(const ObservableObject::Change& change) const {
    // A value that has just come from the settings stands there already. Storing it again would
    // turn a registered default into the user's own choice, and could bring an old value back over
    // a newer one that the settings window has written meanwhile.
    if (defaultsController().isApplying(prefKey_, change.newValue)) {
        return;
    }
    setNumberValue(change.newValue, prefKey_);
}

} // namespace quorvane
