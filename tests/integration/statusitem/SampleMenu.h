#pragma once

#include "platform/Menu.h"
#include "platform/MenuItem.h"

#include <QString>

#include <functional>
#include <memory>
#include <utility>

namespace quorvane::test {

/// A menu with everything that menus have, which tells what is clicked.
///   0 the menu
///   1   Nothing to click (greyed)
///   2   Start now (check mark)
///   3   a separator
///   4   Keep_this (an underscore)
///   5   Settings (submenu)
///   6     Feedback
///   7     Version 1 (greyed)
///   8     Quit
class SampleMenu {
  public:
    using Report = std::function<void(const QString&)>;

    explicit SampleMenu(Report report) : report_(std::move(report)) {
        description_ = &root_.addItem(item("Nothing to click", {}));
        start_ = &root_.addItem(item("Start now", "start"));
        start_->setState(false);
        root_.addItem(MenuItem::separatorItem());
        root_.addItem(item("Keep_this", "keep"));
        auto settings = std::make_unique<Menu>();
        settings->addItem(item("Feedback", "feedback"));
        settings->addItem(item("Version 1", {}));
        settings->addItem(item("Quit", "quit"));
        root_.addItem(item("Settings", {})).setSubmenu(std::move(settings));
    }

    [[nodiscard]] Menu& root() { return root_; }

    [[nodiscard]] MenuItem& description() { return *description_; }

    [[nodiscard]] MenuItem& start() { return *start_; }

    [[nodiscard]] Menu& settings() { return *root_.items().back()->submenu(); }

  private:
    [[nodiscard]] std::unique_ptr<MenuItem> item(const char* title, const char* name) {
        MenuItem::Action action;
        if (name != nullptr) {
            action = [this, name] { report_(QString::fromLatin1(name)); };
        }
        return std::make_unique<MenuItem>(QString::fromUtf8(title), std::move(action));
    }

    Report report_;
    Menu root_;
    MenuItem* description_;
    MenuItem* start_;
};

} // namespace quorvane::test
