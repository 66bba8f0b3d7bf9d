#include "platform/linux/StatusNotifierItem.h"

#include "platform/linux/LabelGuide.h"
#include "platform/linux/StatusNotifierInterface.h"
#include "platform/linux/StatusNotifierTypes.h"

#include <QDBusObjectPath>
#include <QMetaObject>

#include <utility>

namespace quorvane {

namespace {

QString productName() {
    return QStringLiteral("Quorvane");
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, QString iconThemePath)
    : ExportedObject(bus, path(), statusNotifierInterface, statusNotifierDescription),
      iconThemePath_(std::move(iconThemePath)) {
    registerStatusNotifierTypes();
    addMethods();
    addConstantProperties();
    addChangingProperties();
}

// The menu, which hosts open themselves, is all that the item offers. What they report beside it
// has no meaning here.
void StatusNotifierItem::addMethods() {
    const auto accept = [](const QDBusMessage& call) { return call.createReply(); };
    addMethod(QLatin1String("ContextMenu"), QLatin1String("ii"), accept);
    addMethod(QLatin1String("Activate"), QLatin1String("ii"), accept);
    addMethod(QLatin1String("SecondaryActivate"), QLatin1String("ii"), accept);
    addMethod(QLatin1String("XAyatanaSecondaryActivate"), QLatin1String("u"), accept);
    addMethod(QLatin1String("Scroll"), QLatin1String("is"), accept);
}

void StatusNotifierItem::addConstantProperties() {
    const auto add = [this](QLatin1String name, const QVariant& value) {
        addProperty(name, [value] { return value; });
    };
    const auto noPixmap = QVariant::fromValue(QList<StatusNotifierPixmap>());
    add(QLatin1String("Category"), QStringLiteral("Hardware"));
    add(QLatin1String("Id"), QStringLiteral("quorvane"));
    add(QLatin1String("Title"), productName());
    add(QLatin1String("Status"), QStringLiteral("Active"));
    add(QLatin1String("WindowId"), 0);
    add(QLatin1String("IconThemePath"), iconThemePath_);
    add(QLatin1String("Menu"), QVariant::fromValue(QDBusObjectPath(menuPath())));
    add(QLatin1String("ItemIsMenu"), true);
    add(QLatin1String("IconPixmap"), noPixmap);
    add(QLatin1String("IconAccessibleDesc"), productName());
    add(QLatin1String("OverlayIconName"), QString());
    add(QLatin1String("OverlayIconPixmap"), noPixmap);
    add(QLatin1String("AttentionIconName"), QString());
    add(QLatin1String("AttentionIconPixmap"), noPixmap);
    add(QLatin1String("AttentionMovieName"), QString());
    add(QLatin1String("AttentionAccessibleDesc"), QString());
    add(QLatin1String("XAyatanaOrderingIndex"), 0U);
}

void StatusNotifierItem::addChangingProperties() {
    addProperty(QLatin1String("IconName"), [this] { return iconName_; });
    addProperty(QLatin1String("XAyatanaLabel"), [this] { return label_; });
    addProperty(QLatin1String("XAyatanaLabelGuide"), [this] { return labelGuide(label_); });
    addProperty(QLatin1String("ToolTip"), [this] {
        return QVariant::fromValue(
            StatusNotifierToolTip{{}, {}, productName(), label_.trimmed().toHtmlEscaped()});
    });
}

void StatusNotifierItem::setIconName(const QString& name) {
    if (name != iconName_) {
        iconName_ = name;
        announceLater();
    }
}

void StatusNotifierItem::setLabel(const QString& label) {
    if (label != label_) {
        label_ = label;
        announceLater();
    }
}

void StatusNotifierItem::announceMenu() {
    emitSignal(QLatin1String("NewMenu"));
}

void StatusNotifierItem::announceLater() {
    if (!std::exchange(willAnnounce_, true)) {
        QMetaObject::invokeMethod(
            this, [this] { announce(); }, Qt::QueuedConnection);
    }
}

void StatusNotifierItem::announce() {
    willAnnounce_ = false;
    if (std::exchange(announcedIconName_, iconName_) != iconName_) {
        emitSignal(QLatin1String("NewIcon"));
    }
    if (std::exchange(announcedLabel_, label_) != label_) {
        emitSignal(QLatin1String("XAyatanaNewLabel"), {label_, labelGuide(label_)});
        emitSignal(QLatin1String("NewToolTip"));
    }
}

} // namespace quorvane
