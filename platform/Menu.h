#pragma once

#include "platform/MenuItem.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace quorvane {

/// A menu, put together once: its items and their order stay. Main thread only.
class Menu : public QObject {
    Q_OBJECT

  public:
    explicit Menu(QString title = {});
    ~Menu() override;

    [[nodiscard]] const QString& title() const { return title_; }

    /// Returns the item, which the menu owns.
    MenuItem& addItem(std::unique_ptr<MenuItem> item);

    [[nodiscard]] const std::vector<std::unique_ptr<MenuItem>>& items() const { return items_; }

    /// Points; 0 where the desktop does not tell.
    [[nodiscard]] double width() const { return width_; }

    void setWidth(double width) { width_ = width; }

  Q_SIGNALS:
    /// The user is about to see it.
    void willOpen();

  private:
    QString title_;
    std::vector<std::unique_ptr<MenuItem>> items_;
    double width_ = 0;
};

} // namespace quorvane
