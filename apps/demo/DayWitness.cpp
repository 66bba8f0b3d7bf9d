#include "apps/demo/DayWitness.h"

#include "apps/demo/Laptop.h"
#include "battery/Battery.h"
#include "core/QuorvanePrefs.h"
#include "mode/BatterySaver.h"
#include "platform/MainQueue.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "plist/PropertyList.h"

#include <QFileInfo>

#include <cmath>
#include <utility>

namespace quorvane {

namespace {

QString contents(const QByteArray& file) {
    const PropertyListResult list = readPropertyList(file);
    if (list.value) {
        const qsizetype samples =
            list.value->toMap().value(QStringLiteral("dataPoints")).toList().size();
        return QStringLiteral("%1 battery samples").arg(samples);
    }
    return QStringLiteral("%1 bytes").arg(file.size());
}

QString asked(const UserNotification& notification) {
    QString text = notification.title + QStringLiteral(" \u2014 ") + notification.informativeText;
    for (const QString& button : {notification.actionButtonTitle, notification.otherButtonTitle}) {
        if (!button.isEmpty()) {
            text += QStringLiteral(" [%1]").arg(button);
        }
    }
    return text;
}

} // namespace

DayWitness::DayWitness(SimulatedPlatform& platform, const Laptop& laptop, Report report)
    : platform_(platform), laptop_(laptop), report_(std::move(report)),
      brightness_(std::lround(laptop.brightness() * 100.0)) {
    connect(&platform_.userNotifications(), &SimulatedUserNotifications::shown, this,
            &DayWitness::notificationShown);
    connect(&platform_.settings().domain(QuorvanePrefs::domainName()), &SettingsDomain::changed,
            this, &DayWitness::settingsChanged);
    BatterySaver::batterySaver().observe(
        QStringLiteral("enabled"), this, [this](const ObservableObject::Change& change) {
            if (change.newValue != change.oldValue) {
                report_(DemoEvent::Kind::Mode, change.newValue.toBool()
                                                   ? QStringLiteral("Low Power Mode is on")
                                                   : QStringLiteral("Low Power Mode is off"));
            }
        });
    Battery::battery().observe(
        QStringLiteral("batteryPercent"), this,
        [this](const ObservableObject::Change& change) { percentRead(change.newValue.toInt()); });
    listenToLog();
}

DayWitness::~DayWitness() {
    platform_.logSink().setListener({});
}

void DayWitness::listenToLog() {
    for (const QString& line : platform_.logSink().lines()) {
        report_(DemoEvent::Kind::Log, line);
    }
    platform_.logSink().setListener([this](const QString& line) {
        if (isMainThread()) {
            report_(DemoEvent::Kind::Log, line);
        } else {
            queueOnMain(this, [this, line] { report_(DemoEvent::Kind::Log, line); });
        }
    });
}

void DayWitness::percentRead(int percent) {
    const bool low =
        !laptop_.isPluggedIn() && percent <= BatterySaver::batterySaver().batteryThreshhold();
    if (low && !toldOfThreshold_) {
        report_(DemoEvent::Kind::Hardware, QStringLiteral("the charge has reached the threshold"));
    }
    toldOfThreshold_ = low;
}

void DayWitness::look() {
    const long brightness = std::lround(laptop_.brightness() * 100.0);
    if (brightness != brightness_) {
        report_(DemoEvent::Kind::Screen,
                QStringLiteral("brightness %1 % \u2192 %2 %").arg(brightness_).arg(brightness));
        brightness_ = brightness;
    }
}

void DayWitness::lookAtFiles() const {
    const QMap<QString, QByteArray> files = platform_.files().files();
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        report_(DemoEvent::Kind::Stored,
                QStringLiteral("%1 (%2)").arg(QFileInfo(file.key()).fileName(),
                                              contents(file.value())));
    }
}

void DayWitness::notificationShown(const UserNotification& notification) const {
    const bool question = !notification.actionButtonTitle.isEmpty();
    report_(question ? DemoEvent::Kind::Question : DemoEvent::Kind::Notice, asked(notification));
}

void DayWitness::settingsChanged(const QStringList& keys) const {
    const SettingsDomain& domain = platform_.settings().domain(QuorvanePrefs::domainName());
    for (const QString& key : keys) {
        report_(DemoEvent::Kind::Stored,
                QStringLiteral("setting %1 = %2").arg(key, domain.value(key).toString()));
    }
}

} // namespace quorvane
