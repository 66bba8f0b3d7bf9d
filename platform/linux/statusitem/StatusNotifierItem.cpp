#include "platform/linux/statusitem/StatusNotifierItem.h"

#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QMetaObject>

#include <utility>

namespace quorvane {

namespace {

/// What introspection shows of it: the interface with the additions of the Ayatana bars. Changes
/// are told by its own signals, never by PropertiesChanged.
// clang-format off
constexpr QLatin1String statusNotifierDescription(R"xml(
  <interface name="org.kde.StatusNotifierItem">
    <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
    <property name="Category" type="s" access="read"/>
    <property name="Id" type="s" access="read"/>
    <property name="Title" type="s" access="read"/>
    <property name="Status" type="s" access="read"/>
    <property name="WindowId" type="i" access="read"/>
    <property name="IconThemePath" type="s" access="read"/>
    <property name="Menu" type="o" access="read"/>
    <property name="ItemIsMenu" type="b" access="read"/>
    <property name="IconName" type="s" access="read"/>
    <property name="IconPixmap" type="a(iiay)" access="read"/>
    <property name="IconAccessibleDesc" type="s" access="read"/>
    <property name="OverlayIconName" type="s" access="read"/>
    <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
    <property name="AttentionIconName" type="s" access="read"/>
    <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
    <property name="AttentionMovieName" type="s" access="read"/>
    <property name="AttentionAccessibleDesc" type="s" access="read"/>
    <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
    <property name="XAyatanaLabel" type="s" access="read"/>
    <property name="XAyatanaLabelGuide" type="s" access="read"/>
    <property name="XAyatanaOrderingIndex" type="u" access="read"/>
    <method name="ContextMenu">
      <arg name="x" type="i" direction="in"/>
      <arg name="y" type="i" direction="in"/>
    </method>
    <method name="Activate">
      <arg name="x" type="i" direction="in"/>
      <arg name="y" type="i" direction="in"/>
    </method>
    <method name="SecondaryActivate">
      <arg name="x" type="i" direction="in"/>
      <arg name="y" type="i" direction="in"/>
    </method>
    <method name="XAyatanaSecondaryActivate">
      <arg name="timestamp" type="u" direction="in"/>
    </method>
    <method name="Scroll">
      <arg name="delta" type="i" direction="in"/>
      <arg name="orientation" type="s" direction="in"/>
    </method>
    <signal name="NewTitle"/>
    <signal name="NewIcon"/>
    <signal name="NewAttentionIcon"/>
    <signal name="NewOverlayIcon"/>
    <signal name="NewMenu"/>
    <signal name="NewToolTip"/>
    <signal name="NewStatus">
      <arg name="status" type="s"/>
    </signal>
    <signal name="NewIconThemePath">
      <arg name="icon_theme_path" type="s"/>
    </signal>
    <signal name="XAyatanaNewLabel">
      <arg name="label" type="s"/>
      <arg name="guide" type="s"/>
    </signal>
  </interface>
)xml");

// clang-format on

QString productName() {
    return QStringLiteral("Quorvane");
}

// The widest text that may be expected in place of `label`, a text with a percentage or a time in
// hours and minutes ("…" stands for one that is not known yet). Hosts keep so much room, and the
// icons beside it stay where they are while the numbers change.
// Without regular expressions: their compiler would stay in memory for this alone.
QString labelGuide(const QString& label) {
    const QString body = label.trimmed();
    QString longest = body;
    if (body.endsWith(QLatin1Char('%'))) {
        longest = QStringLiteral("100%");
    } else if (body.contains(QLatin1Char(':')) || body == QStringLiteral("\u2026")) {
        longest = QStringLiteral("00:00");
    }
    QString guide = label;
    return guide.replace(label.indexOf(body), body.size(), longest);
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierPixmap& pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, StatusNotifierToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

void registerStatusNotifierTypes() {
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<QList<StatusNotifierPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}

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
