#include "apps/window/ClipboardOwner.h"

#include <QClipboard>
#include <QGuiApplication>

namespace quorvane {

ClipboardOwner::ClipboardOwner(const QString& text, QObject* parent) : QObject(parent) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setText(text);
    connect(clipboard, &QClipboard::dataChanged, this, [this, clipboard] {
        if (!clipboard->ownsClipboard()) {
            Q_EMIT taken();
        }
    });
}

} // namespace quorvane
