#pragma once

#include "platform/StatusBar.h"

#include <QStringList>

namespace quorvane {

/// The status bar of the laptop's desktop, with the one item of the program.
class SimulatedStatusBar final : public StatusBar {
  public:
    /// What the user sees of an item.
    struct Look {
        Menu* menu = nullptr;
        AttributedString title;
        double length = 0;
        QString image;
        bool isTemplate = false;
        ImagePosition imagePosition = ImagePosition::Right;
    };

    [[nodiscard]] std::unique_ptr<StatusItem> statusItemWithLength(double length) override;

    /// Of the newest item; an item's end leaves it as it was.
    [[nodiscard]] const Look& look() const { return look_; }

    [[nodiscard]] int itemCount() const { return itemCount_; }

    /// The setters that were called, in order.
    [[nodiscard]] const QStringList& calls() const { return calls_; }

    void clearCalls() { calls_.clear(); }

  private:
    class Item;

    Look look_;
    int itemCount_ = 0;
    QStringList calls_;
};

} // namespace quorvane
