#include "apps/helper/Extensions.h"

#include "apps/helper/Holders.h"
#include "apps/helper/PowerSwitch.h"
#include "apps/helper/RunTimeConfiguration.h"
#include "platform/Log.h"

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

const QString& unknownExtension() {
    static const QString text = QStringLiteral("The helper has no such extension");
    return text;
}

} // namespace

Extensions::Extensions(ExtensionBundles bundles, LoadedList list, PowerSwitch& turbo,
                       RunTimeConfiguration& configuration, Holders& holders, LogSink& log)
    : bundles_(std::move(bundles)), list_(std::move(list)), turbo_(turbo),
      configuration_(configuration), holders_(holders), log_(log) {
    connect(&configuration_, &RunTimeConfiguration::said, this, &Extensions::follow);
    connect(&holders_, &Holders::abandoned, this, &Extensions::abandon);
}

void Extensions::load(const QString& path, const QString& caller, const Reported& reported) {
    const std::optional<QString> name = ExtensionBundles::meant(path);
    const std::optional<Extension> extension = name ? bundles_.find(*name) : std::nullopt;
    if (!extension) {
        reported(
            {false,
             name ? QStringLiteral("The helper's own %1 is missing or not root's alone").arg(*name)
                  : unknownExtension()});
        return;
    }
    if (!turbo_.isAvailable()) {
        reported({false, QStringLiteral("Not loaded: this machine has no turbo switch")});
        return;
    }
    if (!holders_.add(*name, caller)) {
        reported({false, QStringLiteral("Not loaded: too many programs have loaded it")});
        return;
    }
    start(*extension, [this, caller, extension, reported](const Outcome& outcome) {
        if (!outcome.done) {
            holders_.remove(extension->name, caller);
        }
        reported(
            {outcome.done,
             QStringLiteral("%1 %2: %3").arg(extension->name, extension->version, outcome.text)});
    });
}

void Extensions::start(const Extension& extension, const Reported& reported) {
    if (extension.name == ExtensionBundles::cpuTune) {
        setLoaded(extension, true);
        configuration_.start();
        reported({true, QStringLiteral("Loaded; it follows the run-time configuration")});
        return;
    }
    turbo_.hold(extension.name, [this, extension, reported](const Outcome& outcome) {
        // It may have been given up while the switch was at work.
        if (outcome.done && holders_.isHeld(extension.name)) {
            setLoaded(extension, true);
        }
        reported(outcome);
    });
}

void Extensions::unload(const QString& path, const QString& caller, const Reported& reported) {
    const std::optional<QString> name = ExtensionBundles::meant(path);
    if (!name) {
        reported({false, unknownExtension()});
        return;
    }
    const bool wasHeld = holders_.isHeld(*name);
    holders_.remove(*name, caller);
    if (!wasHeld) {
        reported({true, QStringLiteral("%1: It was not loaded").arg(*name)});
    } else if (holders_.isHeld(*name)) {
        reported({true, QStringLiteral("%1: Another program has loaded it too").arg(*name)});
    } else {
        stop(*name, [name, reported](const Outcome& outcome) {
            reported({outcome.done, QStringLiteral("%1: %2").arg(*name, outcome.text)});
        });
    }
}

void Extensions::stop(const QString& name, const Reported& reported) {
    if (name == ExtensionBundles::cpuTune) {
        configuration_.stop();
    }
    setLoaded({name, {}, {}}, false);
    turbo_.release(name, reported);
}

void Extensions::abandon(const QString& name) {
    if (name == ExtensionBundles::cpuTune || name == ExtensionBundles::disableTurboBoost) {
        log_.write(QStringLiteral("The last program that had loaded %1 has ended.").arg(name));
        stop(name, [](const Outcome& /*outcome*/) {});
    }
}

// Without a word in the file turbo is as it was found.
void Extensions::follow(std::optional<char> setting) {
    const auto report = [this](const Outcome& outcome) { log_.write(outcome.text); };
    if (setting == '0') {
        turbo_.hold(ExtensionBundles::cpuTune, report);
    } else {
        turbo_.release(ExtensionBundles::cpuTune, report);
    }
}

void Extensions::setLoaded(const Extension& extension, bool isLoaded) {
    const auto sameName = [&extension](const Extension& each) {
        return each.name == extension.name;
    };
    loaded_.removeIf(sameName);
    if (isLoaded) {
        loaded_.append(extension);
    }
    writeList();
}

void Extensions::forgetAll() {
    loaded_.clear();
    writeList();
}

void Extensions::writeList() {
    if (const std::optional<QString> error = list_.write(loaded_)) {
        log_.write(
            QStringLiteral("The list of loaded extensions cannot be written: %1").arg(*error));
    }
}

} // namespace quorvane
