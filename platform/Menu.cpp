#include "platform/Menu.h"

#include <utility>

namespace quorvane {

Menu::Menu(QString title) : title_(std::move(title)) {}

Menu::~Menu() = default;

MenuItem& Menu::addItem(std::unique_ptr<MenuItem> item) {
    items_.push_back(std::move(item));
    return *items_.back();
}

} // namespace quorvane
