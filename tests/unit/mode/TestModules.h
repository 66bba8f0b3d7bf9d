#pragma once

#include "mode/QuorvaneModule.h"

#include <QStringList>

namespace quorvane::test {

/// A module that only counts. Its class name is its identifier, so the ones below stand for modules
/// of the same names.
class CountingModule : public QuorvaneModule {
    Q_OBJECT

  public:
    bool activate() override {
        ++activations;
        order().append(QStringLiteral("+") + identifier());
        return succeeds;
    }

    bool deactivate() override {
        ++deactivations;
        order().append(QStringLiteral("-") + identifier());
        return succeeds;
    }

    void recieveNotification(const UserNotification& /*notification*/) override { ++received; }

    int activations = 0;
    int deactivations = 0;
    int received = 0;
    bool succeeds = true;

    /// What all modules did, in order, since it was last cleared.
    static QStringList& order() {
        static QStringList all;
        return all;
    }
};

class TopAppsModule : public CountingModule {
    Q_OBJECT
};

class ServicesModule : public CountingModule {
    Q_OBJECT
};

class BrowserModule : public CountingModule {
    Q_OBJECT
};

class AppNapModule : public CountingModule {
    Q_OBJECT
};

class TurboModule : public CountingModule {
    Q_OBJECT
};

class FlashModule : public CountingModule {
    Q_OBJECT
};

/// All modules in their order; the brightness module is the real one.
[[nodiscard]] ModuleList completeModules();

} // namespace quorvane::test
