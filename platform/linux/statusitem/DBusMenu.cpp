#include "platform/linux/statusitem/DBusMenu.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QLocale>
#include <QMetaObject>
#include <QPointer>

#include <utility>

namespace quorvane {

namespace {

constexpr uint protocolVersion = 3;

/// What introspection shows of it.
// clang-format off
constexpr QLatin1String dbusMenuDescription(R"xml(
  <interface name="com.canonical.dbusmenu">
    <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="const"/>
    <property name="Version" type="u" access="read"/>
    <property name="TextDirection" type="s" access="read"/>
    <property name="Status" type="s" access="read"/>
    <property name="IconThemePath" type="as" access="read"/>
    <method name="GetLayout">
      <arg name="parentId" type="i" direction="in"/>
      <arg name="recursionDepth" type="i" direction="in"/>
      <arg name="propertyNames" type="as" direction="in"/>
      <arg name="revision" type="u" direction="out"/>
      <arg name="layout" type="(ia{sv}av)" direction="out"/>
    </method>
    <method name="GetGroupProperties">
      <arg name="ids" type="ai" direction="in"/>
      <arg name="propertyNames" type="as" direction="in"/>
      <arg name="properties" type="a(ia{sv})" direction="out"/>
    </method>
    <method name="GetProperty">
      <arg name="id" type="i" direction="in"/>
      <arg name="name" type="s" direction="in"/>
      <arg name="value" type="v" direction="out"/>
    </method>
    <method name="Event">
      <arg name="id" type="i" direction="in"/>
      <arg name="eventId" type="s" direction="in"/>
      <arg name="data" type="v" direction="in"/>
      <arg name="timestamp" type="u" direction="in"/>
    </method>
    <method name="EventGroup">
      <arg name="events" type="a(isvu)" direction="in"/>
      <arg name="idErrors" type="ai" direction="out"/>
    </method>
    <method name="AboutToShow">
      <arg name="id" type="i" direction="in"/>
      <arg name="needUpdate" type="b" direction="out"/>
    </method>
    <method name="AboutToShowGroup">
      <arg name="ids" type="ai" direction="in"/>
      <arg name="updatesNeeded" type="ai" direction="out"/>
      <arg name="idErrors" type="ai" direction="out"/>
    </method>
    <signal name="ItemsPropertiesUpdated">
      <arg name="updatedProps" type="a(ia{sv})"/>
      <arg name="removedProps" type="a(ias)"/>
    </signal>
    <signal name="LayoutUpdated">
      <arg name="revision" type="u"/>
      <arg name="parent" type="i"/>
    </signal>
    <signal name="ItemActivationRequested">
      <arg name="id" type="i"/>
      <arg name="timestamp" type="u"/>
    </signal>
  </interface>
)xml");

// clang-format on

QDBusMessage unknownItem(const QDBusMessage& call) {
    return call.createErrorReply(QDBusError::InvalidArgs,
                                 QStringLiteral("The menu has no item of this id"));
}

QVariant list(const QList<int>& ids) {
    return QVariant::fromValue(ids);
}

} // namespace

DBusMenu::DBusMenu(const QDBusConnection& bus, const QString& path, const QString& iconThemePath)
    : ExportedObject(bus, path, dbusMenuInterface, dbusMenuDescription), updates_(tree_) {
    registerDBusMenuTypes();
    addProperties(iconThemePath);
    addReadingMethods();
    addEventMethods();
}

void DBusMenu::addProperties(const QString& iconThemePath) {
    addProperty(QLatin1String("Version"), [] { return protocolVersion; });
    addProperty(QLatin1String("Status"), [] { return QStringLiteral("normal"); });
    addProperty(QLatin1String("TextDirection"), [] {
        return QLocale().textDirection() == Qt::RightToLeft ? QStringLiteral("rtl")
                                                            : QStringLiteral("ltr");
    });
    addProperty(QLatin1String("IconThemePath"),
                [iconThemePath] { return QStringList(iconThemePath); });
}

void DBusMenu::addReadingMethods() {
    addMethod(QLatin1String("GetLayout"), QLatin1String("iias"),
              [this](const QDBusMessage& call) { return getLayout(call); });
    addMethod(QLatin1String("GetGroupProperties"), QLatin1String("aias"),
              [this](const QDBusMessage& call) { return getGroupProperties(call); });
    addMethod(QLatin1String("GetProperty"), QLatin1String("is"),
              [this](const QDBusMessage& call) { return getProperty(call); });
}

void DBusMenu::addEventMethods() {
    addMethod(QLatin1String("Event"), QLatin1String("isvu"),
              [this](const QDBusMessage& call) { return receiveEvent(call); });
    addMethod(QLatin1String("EventGroup"), QLatin1String("a(isvu)"),
              [this](const QDBusMessage& call) { return receiveEvents(call); });
    addMethod(QLatin1String("AboutToShow"), QLatin1String("i"),
              [this](const QDBusMessage& call) { return aboutToShow(call); });
    addMethod(QLatin1String("AboutToShowGroup"), QLatin1String("ai"),
              [this](const QDBusMessage& call) { return aboutToShowGroup(call); });
}

void DBusMenu::setMenu(Menu& menu) {
    for (const int id : tree_.ids()) {
        if (const MenuItem* item = tree_.item(id)) {
            item->disconnect(this);
        }
    }
    tree_ = DBusMenuTree(menu);
    updates_ = DBusMenuUpdates(tree_);
    clicked_.clear();
    for (const int id : tree_.ids()) {
        if (const MenuItem* item = tree_.item(id)) {
            connect(item, &MenuItem::changed, this, &DBusMenu::announceLater);
        }
    }
    ++revision_;
    emitSignal(QLatin1String("LayoutUpdated"), {revision_, DBusMenuTree::rootId});
}

QDBusMessage DBusMenu::getLayout(const QDBusMessage& call) const {
    const QVariantList arguments = call.arguments();
    const int parent = arguments.at(0).toInt();
    if (!tree_.contains(parent)) {
        return unknownItem(call);
    }
    const DBusMenuLayout layout =
        tree_.layout(parent, arguments.at(1).toInt(), arguments.at(2).toStringList());
    return call.createReply({revision_, QVariant::fromValue(layout)});
}

QDBusMessage DBusMenu::getGroupProperties(const QDBusMessage& call) const {
    auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    const QStringList names = call.arguments().at(1).toStringList();
    if (ids.isEmpty()) {
        ids = tree_.ids();
    }
    QList<DBusMenuProperties> found;
    for (const int id : std::as_const(ids)) {
        if (tree_.contains(id)) {
            found.append({id, onlyNamed(tree_.properties(id), names)});
        }
    }
    return call.createReply(QVariant::fromValue(found));
}

QDBusMessage DBusMenu::getProperty(const QDBusMessage& call) const {
    const int id = call.arguments().at(0).toInt();
    const QString name = call.arguments().at(1).toString();
    if (!tree_.contains(id)) {
        return unknownItem(call);
    }
    const QVariant value = tree_.properties(id).value(name, dbusMenuDefault(name));
    return value.isValid()
               ? call.createReply(QVariant::fromValue(QDBusVariant(value)))
               : call.createErrorReply(QDBusError::InvalidArgs,
                                       QStringLiteral("No menu item has a property %1").arg(name));
}

QDBusMessage DBusMenu::receiveEvent(const QDBusMessage& call) {
    const int id = call.arguments().at(0).toInt();
    if (!tree_.contains(id)) {
        return unknownItem(call);
    }
    handle(id, call.arguments().at(1).toString());
    return call.createReply();
}

QDBusMessage DBusMenu::receiveEvents(const QDBusMessage& call) {
    const auto events = qdbus_cast<QList<DBusMenuEvent>>(call.arguments().at(0));
    QList<int> unknown;
    for (const DBusMenuEvent& event : events) {
        if (tree_.contains(event.id)) {
            handle(event.id, event.type);
        } else {
            unknown.append(event.id);
        }
    }
    // An error tells a host that its idea of the menu is wrong altogether.
    return !events.isEmpty() && unknown.size() == events.size() ? unknownItem(call)
                                                                : call.createReply(list(unknown));
}

// The layout never changes here. Titles and check marks that do are told before the reply, so that
// the menu opens with them.
QDBusMessage DBusMenu::aboutToShow(const QDBusMessage& call) {
    const int id = call.arguments().at(0).toInt();
    if (!tree_.contains(id)) {
        return unknownItem(call);
    }
    open(id);
    aboutToShow_ = id;
    announce();
    return call.createReply(false);
}

QDBusMessage DBusMenu::aboutToShowGroup(const QDBusMessage& call) {
    const auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    QList<int> unknown;
    for (const int id : ids) {
        if (tree_.contains(id)) {
            open(id);
            aboutToShow_ = id;
        } else {
            unknown.append(id);
        }
    }
    announce();
    return !ids.isEmpty() && unknown.size() == ids.size()
               ? unknownItem(call)
               : call.createReply({list({}), list(unknown)});
}

void DBusMenu::handle(int id, const QString& eventType) {
    if (eventType == QLatin1String("clicked")) {
        click(id);
    } else if (eventType == QLatin1String("opened") && std::exchange(aboutToShow_, -1) != id) {
        open(id);
    }
}

// Later, because the host waits for the reply meanwhile, and an action may take its time or end
// this object. Nobody clicks twice before the action of the first click has run.
void DBusMenu::click(int id) {
    MenuItem* const item = tree_.item(id);
    if (item == nullptr || clicked_.contains(id)) {
        return;
    }
    clicked_.insert(id);
    QMetaObject::invokeMethod(
        this,
        [this, id, item = QPointer<MenuItem>(item)] {
            clicked_.remove(id);
            if (item) {
                item->performAction();
            }
        },
        Qt::QueuedConnection);
}

void DBusMenu::open(int id) {
    if (Menu* const menu = tree_.menu(id)) {
        Q_EMIT menu->willOpen();
    }
}

void DBusMenu::announceLater() {
    if (!std::exchange(willAnnounce_, true)) {
        QMetaObject::invokeMethod(
            this, [this] { announce(); }, Qt::QueuedConnection);
    }
}

void DBusMenu::announce() {
    if (!std::exchange(willAnnounce_, false)) {
        return;
    }
    const DBusMenuUpdates::Difference difference = updates_.take(tree_);
    if (!difference.isEmpty()) {
        emitSignal(
            QLatin1String("ItemsPropertiesUpdated"),
            {QVariant::fromValue(difference.updated), QVariant::fromValue(difference.removed)});
    }
}

} // namespace quorvane
