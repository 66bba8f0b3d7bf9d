#pragma once

#include "platform/AttributedString.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

class Menu;

/// One line of a menu. A status bar shows it as it is at every moment: it hears of each change.
/// Main thread only.
class MenuItem : public QObject {
    Q_OBJECT

  public:
    using Action = std::function<void()>;

    /// A picture of one's own in place of the title; its place within the menu, in points.
    struct View {
        double x = 0;
        double y = 0;
        double width = 0;
        double height = 0;
    };

    /// Without an action an item is a line to read, greyed, unless it carries a submenu.
    explicit MenuItem(QString title, Action action = {});
    ~MenuItem() override;

    [[nodiscard]] static std::unique_ptr<MenuItem> separatorItem();

    [[nodiscard]] bool isSeparatorItem() const { return isSeparator_; }

    /// The plain text, also of an attributed title.
    [[nodiscard]] const QString& title() const { return attributedTitle_.text; }

    void setTitle(const QString& title);

    [[nodiscard]] const AttributedString& attributedTitle() const { return attributedTitle_; }

    void setAttributedTitle(const AttributedString& title);

    /// Whether it has a check mark; nothing for an item that is none of this kind.
    [[nodiscard]] std::optional<bool> state() const { return state_; }

    void setState(bool isOn);

    [[nodiscard]] bool isEnabled() const { return action_ || submenu_; }

    [[nodiscard]] Menu* submenu() const { return submenu_.get(); }

    void setSubmenu(std::unique_ptr<Menu> submenu);

    [[nodiscard]] const std::optional<View>& view() const { return view_; }

    void setView(const View& view) { view_ = view; }

    /// The user has chosen it. One without an action does nothing.
    void performAction();

  Q_SIGNALS:
    /// The title or the check mark is another one than before.
    void changed();

  private:
    AttributedString attributedTitle_;
    Action action_;
    bool isSeparator_ = false;
    std::optional<bool> state_;
    std::unique_ptr<Menu> submenu_;
    std::optional<View> view_;
};

} // namespace quorvane
