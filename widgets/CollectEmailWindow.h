#pragma once

#include <QWidget>

namespace quorvane {

/// The window that asks for an e-mail address. Everything in it comes from its layout.
class CollectEmailWindow : public QWidget {
    Q_OBJECT

  public:
    explicit CollectEmailWindow(QWidget* parent = nullptr);
};

} // namespace quorvane
