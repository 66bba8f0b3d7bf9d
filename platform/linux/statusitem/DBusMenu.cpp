#include "platform/linux/DBusMenu.h"

#include "platform/linux/DBusMenuInterface.h"
#include "platform/linux/DBusMenuItemProperties.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QLocale>
#include <QMetaObject>
#include <QPointer>

#include <utility>

namespace quorvane {

namespace {

constexpr uint protocolVersion = 3;

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
