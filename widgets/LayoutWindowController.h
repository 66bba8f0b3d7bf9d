#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

#include <memory>

namespace quorvane {

/// Controls a window of a layout file, and owns it.
class LayoutWindowController : public QObject {
    Q_OBJECT

  public:
    explicit LayoutWindowController(QString layoutFile, QObject* parent = nullptr);

    /// Loads the layout at the first call. Null when that fails; `error` says why then.
    [[nodiscard]] QWidget* window();

    [[nodiscard]] QString error() const { return error_; }

  private:
    QString layoutFile_;
    std::unique_ptr<QWidget> window_;
    QString error_;
    bool isLoaded_ = false;
};

} // namespace quorvane
