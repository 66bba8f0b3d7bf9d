#pragma once

#include "platform/Windows.h"

#include <QDialog>
#include <QList>
#include <QPushButton>

class QBoxLayout;

namespace quorvane {

/// A message that waits for the user's answer. Its texts are shown letter by letter, never as
/// markup. `done` with the index of the pressed button, so `exec` and `result` give that.
class AlertDialog : public QDialog {
    Q_OBJECT

  public:
    /// The alert has at least one button; its safe button is one of them.
    explicit AlertDialog(const Alert& alert, QWidget* parent = nullptr);

    /// Escape and the window's own close button: as the alert's safe button.
    void reject() override;

  private:
    void addTexts(QBoxLayout& layout, const Alert& alert);
    void addButtons(QBoxLayout& layout, const QStringList& texts);

    QList<QPushButton*> buttons_;
    int safeButton_;
};

} // namespace quorvane
