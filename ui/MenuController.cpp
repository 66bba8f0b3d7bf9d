#include "ui/MenuController.h"

#include "battery/Battery.h"
#include "core/Localized.h"
#include "core/QuorvanePrefs.h"
#include "core/SoftwareUpdater.h"
#include "core/UserDefaults.h"
#include "helperclient/HelperTool.h"
#include "mode/BatterySaver.h"
#include "platform/Bundle.h"
#include "platform/Menu.h"
#include "platform/Opener.h"
#include "platform/Pasteboard.h"
#include "platform/Platform.h"
#include "platform/StatusBar.h"
#include "ui/DebugInformation.h"
#include "ui/StatusIcon.h"

#include <utility>

namespace quorvane {

namespace {

constexpr double descriptionFontSize = 12.0;
constexpr double descriptionBaselineOffset = 4.0;
constexpr AttributedString::Color lightGray{2.0 / 3.0, 2.0 / 3.0, 2.0 / 3.0};

const QString enabledKey = QStringLiteral("enabled");
const QString percentKey = QStringLiteral("batteryPercentNumber");
const QString timeKey = QStringLiteral("batteryTimeRemainingNumber");
const QString thresholdKey = QStringLiteral("batteryThreshhold");
const QString launchModeKey = QStringLiteral("launchMode");
const QString displayModeKey = QStringLiteral("menuBarDisplayMode");
const QString showBatteryKey = QStringLiteral("showBatteryIcon");

QString infoText(const char* key) {
    return platform().bundle().infoDictionary().value(QLatin1String(key)).toString();
}

QString versionTitle() {
    return filledIn(localized("Quorvane %@ (r%@)"),
                    {infoText("CFBundleShortVersionString"), infoText("CFBundleVersion")});
}

} // namespace

MenuController::MenuController(Action quit)
    : quit_(std::move(quit)), batterySaver_(BatterySaver::batterySaver()) {
    // Nothing in here reads it: it tells others who share the settings where the program lies.
    QuorvanePrefs::userDefaults().setURL(platform().bundle().bundleURL(),
                                         QStringLiteral("AppLocation"));
    // The controller binds itself to the settings only when the start is over. Until then it acts
    // as in the automatic launch mode, so that a nearly empty battery is met at once; the user's
    // launch mode then decides afresh.
    batterySaver_.checkThreshold();
    menu_ = newMenu();
    statusItem_ = platform().statusBar().statusItemWithLength(StatusItem::variableLength);
    statusItem_->setMenu(*menu_);
    updateTitle();
    updateMenuAlignment();
    registerObservers();
    bindSettings();
    updateIcon();
}

MenuController::~MenuController() = default;

std::unique_ptr<Menu> MenuController::newMenu() {
    auto menu = std::make_unique<Menu>();
    connect(menu.get(), &Menu::willOpen, this, &MenuController::menuWillOpen);
    enableDescriptionItem_ = &addDescriptionItem(*menu);
    quorvaneEnabledMenuItem_ = &addSwitch(*menu);
    menu->addItem(MenuItem::separatorItem());
    menu->addItem(MenuItem::separatorItem());
    menu->addItem(std::make_unique<MenuItem>(localized("Open Quorvane Preferences..."),
                                             [this] { openPrefPane(); }));
    menu->addItem(std::make_unique<MenuItem>(versionTitle())).setSubmenu(newSettingsMenu());
    return menu;
}

MenuItem& MenuController::addDescriptionItem(Menu& menu) const {
    MenuItem& item = menu.addItem(std::make_unique<MenuItem>(QString()));
    item.setAttributedTitle(enabledDescription());
    return item;
}

MenuItem& MenuController::addSwitch(Menu& menu) {
    MenuItem& item =
        menu.addItem(std::make_unique<MenuItem>(QString(), [this] { enableQuorvaneClicked(); }));
    item.setState(batterySaver_.enabled());
    batterySaver_.observe(enabledKey, &item,
                          [this, &item](const Change&) { item.setState(batterySaver_.enabled()); });
    return item;
}

std::unique_ptr<Menu> MenuController::newSettingsMenu() {
    auto menu = std::make_unique<Menu>(localized("Settings"));
    menu->addItem(
        std::make_unique<MenuItem>(localized("Send Feedback"), [this] { showSendFeedback(); }));
    menu->addItem(std::make_unique<MenuItem>(localized("Check For Updates"), [] {
        SoftwareUpdater::sharedUpdater().checkForUpdates();
    }));
    menu->addItem(std::make_unique<MenuItem>(localized("Quit Quorvane"), quit_));
    return menu;
}

void MenuController::registerObservers() {
    const auto observer = [this](const Change& change) { observeValue(change); };
    batterySaver_.observe(enabledKey, this, observer);
    Battery::battery().observe(percentKey, this, observer);
    Battery::battery().observe(timeKey, this, observer);
    batterySaver_.observe(thresholdKey, this, observer);
    batterySaver_.observe(launchModeKey, this, observer);
}

void MenuController::bindSettings() {
    QuorvanePrefs::bindKey(displayModeKey, *this, QStringLiteral("MenuBarDisplayMode"));
    QuorvanePrefs::bindKey(showBatteryKey, *this, QStringLiteral("MenuBarShowBatteryIcon"));
}

AttributedString MenuController::enabledDescription() const {
    const QString text = batterySaver_.isLaunchMode(LaunchMode::Manual)
                             ? localized("MANUAL START MODE")
                             : filledIn(localized("LOW POWER MODE STARTS AT %d%%"),
                                        batterySaver_.batteryThreshhold());
    return {text, descriptionFontSize, lightGray, descriptionBaselineOffset};
}

QString MenuController::quorvaneMenuTitle() const {
    return batterySaver_.enabled() ? localized("Low Power Mode is On")
                                   : localized("Start Low Power Mode Now");
}

void MenuController::updateTitle() {
    quorvaneEnabledMenuItem_->setTitle(quorvaneMenuTitle());
}

void MenuController::updateIcon() {
    const Battery& battery = Battery::battery();
    StatusIcon::State state;
    state.modeIsOn = batterySaver_.enabled();
    state.percent = battery.batteryPercentNumber().toLongLong();
    state.seconds = static_cast<std::int64_t>(battery.batteryTimeRemainingNumber().toDouble());
    state.estimate = battery.batteryTimeRemaining();
    state.displayMode = menuBarDisplayMode_;
    state.showsBattery = showBatteryIcon_;
    const StatusIcon icon(state);
    statusItem_->setAttributedTitle(icon.title);
    statusItem_->setLength(StatusItem::variableLength);
    statusItem_->setImage(icon.imageName);
    statusItem_->setTemplate(true);
    statusItem_->setImagePosition(icon.imagePosition);
}

void MenuController::updateMenuAlignment() {
    if (batteryMenuItem != nullptr) {
        const double height = batteryMenuItem->view() ? batteryMenuItem->view()->height : 0;
        batteryMenuItem->setView({0, 0, menu_->width(), height});
    }
}

void MenuController::enableQuorvaneClicked() {
    batterySaver_.toggleEnabled();
}

void MenuController::openPrefPane() {
    prefPane_.openPrefPane();
}

void MenuController::showSendFeedback() {
    platform().opener().openURL(QUrl(infoText("QuorvaneContactPage")));
}

void MenuController::copyDebugInfo() {
    platform().pasteboard().setString(debugInformation());
}

void MenuController::uninstall() {
    batterySaver_.quit();
    HelperTool::helperTool().uninstall();
}

void MenuController::menuWillOpen() {}

void MenuController::observeValue(const Change& change) {
    if (change.key == enabledKey || change.key == percentKey || change.key == timeKey) {
        updateTitle();
        updateIcon();
    } else if (change.key == launchModeKey || change.key == thresholdKey) {
        enableDescriptionItem_->setAttributedTitle(enabledDescription());
    }
}

void MenuController::didChangeValueForKey(const QString& key) {
    if (key == displayModeKey || key == showBatteryKey) {
        updateIcon();
    }
    ObservableObject::didChangeValueForKey(key);
}

void MenuController::setShowBatteryIcon(bool shows) {
    setObserved(showBatteryIcon_, shows, showBatteryKey);
}

void MenuController::setMenuBarDisplayMode(qint32 mode) {
    setObserved(menuBarDisplayMode_, mode, displayModeKey);
}

} // namespace quorvane
