#include "platform/linux/processes/ApplicationUnit.h"

#include <algorithm>

namespace quorvane {

namespace {

// systemd writes what may not stand in a unit's name, and a "-" of the name itself, as "\x2d".
QByteArray withoutUnitEscapes(const QByteArray& escaped) {
    QByteArray text;
    for (qsizetype at = 0; at < escaped.size(); ++at) {
        const bool isEscape =
            escaped.at(at) == '\\' && at + 3 < escaped.size() && escaped.at(at + 1) == 'x';
        const QByteArray code =
            isEscape ? QByteArray::fromHex(escaped.mid(at + 2, 2)) : QByteArray();
        if (code.size() == 1) {
            text.append(code);
            at += 3;
        } else {
            text.append(escaped.at(at));
        }
    }
    return text;
}

QByteArray nameIn(const QByteArray& path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

/// The id of the entry that belongs to it is PACKAGE_PROGRAM. Empty when it is no program's.
QByteArray idOfSnap(QByteArray name) {
    constexpr qsizetype uuidWithSeparator = 37;
    constexpr QByteArrayView beginning("snap.");
    constexpr QByteArrayView ending(".scope");
    if (!name.startsWith(beginning) || !name.endsWith(ending)) {
        return {};
    }
    name.chop(std::min(name.size(), uuidWithSeparator + ending.size()));
    const QList<QByteArray> parts = name.mid(beginning.size()).split('.');
    const bool isProgram = parts.size() == 2 && !parts.at(0).isEmpty() && !parts.at(1).isEmpty();
    return isProgram ? parts.join('_') : QByteArray();
}

QList<QByteArray> idsOfApplication(QByteArray name, bool isScope) {
    if (!isScope && name.contains('@')) {
        name.truncate(name.indexOf('@'));
    }
    QList<QByteArray> ids;
    const QList<QByteArray> parts = name.split('-');
    const qsizetype count = parts.size();
    const auto add = [&ids, &parts](qsizetype from, qsizetype to) {
        const QByteArray id =
            from < to ? withoutUnitEscapes(parts.mid(from, to - from).join('-')) : QByteArray();
        if (!id.isEmpty() && !ids.contains(id)) {
            ids.append(id);
        }
    };
    if (isScope) { // with a number at the end
        add(count > 2 ? 1 : 0, count - 1);
        add(0, count - 1);
    }
    add(count > 1 ? 1 : 0, count);
    add(0, count);
    return ids;
}

} // namespace

ApplicationUnit::ApplicationUnit(const QByteArray& controlGroup) {
    QByteArray path = controlGroup;
    while (!path.isEmpty() && !isMadeByDesktop(nameIn(path)) && idOfSnap(nameIn(path)).isEmpty()) {
        path.truncate(std::max<qsizetype>(path.lastIndexOf('/'), 0));
    }
    controlGroup_ = path;
}

/// "0::/PATH" where there is one hierarchy, "1:name=systemd:/PATH" where there are several; those
/// of the controllers are not the service manager's.
ApplicationUnit ApplicationUnit::ofControlGroups(const QByteArray& text) {
    for (const QByteArray& line : text.split('\n')) {
        const qsizetype first = line.indexOf(':');
        const qsizetype second = line.indexOf(':', first + 1);
        if (first <= 0 || second <= first) {
            continue;
        }
        const QByteArray hierarchy = line.mid(first + 1, second - first - 1);
        if (hierarchy.isEmpty() || hierarchy == "name=systemd") {
            ApplicationUnit unit(line.mid(second + 1));
            if (!unit.controlGroup().isEmpty()) {
                return unit;
            }
        }
    }
    return {};
}

bool ApplicationUnit::isMadeByDesktop(const QByteArray& name) {
    return name.startsWith("app-") && (name.endsWith(".scope") || name.endsWith(".service"));
}

QList<QByteArray> ApplicationUnit::possibleIds() const {
    const QByteArray name = nameIn(controlGroup_);
    if (!isMadeByDesktop(name)) {
        const QByteArray id = idOfSnap(name);
        return id.isEmpty() ? QList<QByteArray>() : QList<QByteArray>{id};
    }
    constexpr qsizetype beginning = 4; // "app-"
    return idsOfApplication(name.mid(beginning, name.lastIndexOf('.') - beginning),
                            name.endsWith(".scope"));
}

} // namespace quorvane
