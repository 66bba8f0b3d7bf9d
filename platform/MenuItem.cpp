#include "platform/MenuItem.h"

#include "platform/Menu.h"

#include <utility>

namespace quorvane {

MenuItem::MenuItem(QString title, Action action) : action_(std::move(action)) {
    attributedTitle_.text = std::move(title);
}

MenuItem::~MenuItem() = default;

std::unique_ptr<MenuItem> MenuItem::separatorItem() {
    auto item = std::make_unique<MenuItem>(QString());
    item->isSeparator_ = true;
    return item;
}

void MenuItem::setTitle(const QString& title) {
    setAttributedTitle({title, {}, {}, 0});
}

void MenuItem::setAttributedTitle(const AttributedString& title) {
    if (title != attributedTitle_) {
        attributedTitle_ = title;
        Q_EMIT changed();
    }
}

void MenuItem::setState(bool isOn) {
    if (state_ != isOn) {
        state_ = isOn;
        Q_EMIT changed();
    }
}

void MenuItem::setSubmenu(std::unique_ptr<Menu> submenu) {
    submenu_ = std::move(submenu);
}

void MenuItem::performAction() {
    // A copy, because what is done may take the whole menu away.
    if (const Action action = action_) {
        action();
    }
}

} // namespace quorvane
