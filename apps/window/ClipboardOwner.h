#pragma once

#include <QObject>
#include <QString>

namespace quorvane {

/// Keeps a text on the clipboard, which lies with the program that has put it there.
class ClipboardOwner : public QObject {
    Q_OBJECT

  public:
    explicit ClipboardOwner(const QString& text, QObject* parent = nullptr);

  Q_SIGNALS:
    /// Another program has the clipboard now, and this text is of no more use.
    void taken();
};

} // namespace quorvane
