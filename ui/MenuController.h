#pragma once

#include "core/ObservableObject.h"
#include "platform/AttributedString.h"
#include "ui/PrefPane.h"

#include <QHash>

#include <cstdint>
#include <memory>

namespace quorvane {

class BatterySaver;
class Menu;
class MenuItem;
class StatusItem;

/// The status item with its menu: shows what the controller and the battery monitor say and passes
/// the user's clicks on. Made once, kept for the life of the process. Main thread only.
class MenuController : public ObservableObject {
    Q_OBJECT
    Q_PROPERTY(bool showBatteryIcon READ showBatteryIcon WRITE setShowBatteryIcon)
    Q_PROPERTY(qint32 menuBarDisplayMode READ menuBarDisplayMode WRITE setMenuBarDisplayMode)
    Q_PROPERTY(QString quorvaneMenuTitle READ quorvaneMenuTitle)

  public:
    using Action = std::function<void()>;

    /// Builds everything and has the controller make its first decision. `quit` is the
    /// application's own way to quit.
    explicit MenuController(Action quit);
    ~MenuController() override;

    [[nodiscard]] std::unique_ptr<Menu> newMenu();

    /// The text of the line at the top: when the mode starts by itself.
    [[nodiscard]] AttributedString enabledDescription() const;

    [[nodiscard]] QString quorvaneMenuTitle() const;

    void updateTitle();
    void updateIcon();

    /// As wide as the menu: the battery item's own view, where there is one.
    void updateMenuAlignment();

    void enableQuorvaneClicked();
    void openPrefPane();
    void showSendFeedback();
    void copyDebugInfo();
    void uninstall();
    void menuWillOpen();

    /// Reacts to a property of the controller or of the battery monitor.
    void observeValue(const Change& change);
    void didChangeValueForKey(const QString& key) override;

    [[nodiscard]] bool showBatteryIcon() const { return showBatteryIcon_; }

    void setShowBatteryIcon(bool shows);

    /// A value of `MenuBarDisplay`, or whatever number stands in the settings.
    [[nodiscard]] qint32 menuBarDisplayMode() const { return menuBarDisplayMode_; }

    void setMenuBarDisplayMode(qint32 mode);

    [[nodiscard]] Menu* menu() const { return menu_.get(); }

    [[nodiscard]] PrefPane& prefPane() { return prefPane_; }

    [[nodiscard]] StatusItem* statusItem() const { return statusItem_.get(); }

    [[nodiscard]] BatterySaver& batterySaver() const { return batterySaver_; }

    [[nodiscard]] MenuItem* quorvaneEnabledMenuItem() const { return quorvaneEnabledMenuItem_; }

    [[nodiscard]] MenuItem* enableDescriptionItem() const { return enableDescriptionItem_; }

    /// Nothing of the application gives a value to these; they are there for an edition that does.
    Menu* settingsMenu = nullptr;
    MenuItem* batteryMenuItem = nullptr;
    MenuItem* startAutoMenuItem = nullptr;
    MenuItem* startAskMenuItem = nullptr;
    MenuItem* startNeverMenuItem = nullptr;
    MenuItem* displayLogoItem = nullptr;
    MenuItem* displayBatteryItem = nullptr;
    QHash<int, MenuItem*> thresholdOptionItems;

  private:
    [[nodiscard]] std::unique_ptr<Menu> newSettingsMenu();
    MenuItem& addDescriptionItem(Menu& menu) const;
    MenuItem& addSwitch(Menu& menu);
    void registerObservers();
    void bindSettings();

    Action quit_;
    bool showBatteryIcon_ = false;
    qint32 menuBarDisplayMode_ = 0;
    BatterySaver& batterySaver_;
    PrefPane prefPane_;
    MenuItem* quorvaneEnabledMenuItem_ = nullptr;
    MenuItem* enableDescriptionItem_ = nullptr;
    std::unique_ptr<Menu> menu_;
    std::unique_ptr<StatusItem> statusItem_; // goes before the menu that it shows
};

} // namespace quorvane
