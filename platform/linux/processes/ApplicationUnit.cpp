#include "platform/linux/ApplicationUnit.h"

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

// The last part of the path of one hierarchy, for lines such as "0::/user.slice/.../app-x.scope".
QByteArray leafOf(const QByteArray& text, const QByteArray& controllers) {
    for (const QByteArray& line : text.split('\n')) {
        const qsizetype first = line.indexOf(':');
        const qsizetype second = line.indexOf(':', first + 1);
        if (first > 0 && second > 0 && line.mid(first + 1, second - first - 1) == controllers) {
            return line.mid(line.lastIndexOf('/') + 1);
        }
    }
    return {};
}

} // namespace

ApplicationUnit::ApplicationUnit(const QByteArray& name) {
    const bool isScope = name.endsWith(".scope");
    const bool isService = name.endsWith(".service");
    if (!isScope && !isService) {
        return;
    }
    const QByteArray stem = name.left(name.lastIndexOf('.'));
    if (stem.startsWith("app-")) {
        readApplication(stem.mid(4), isScope);
    } else if (isScope && stem.startsWith("snap.")) {
        readSnap(stem.mid(5));
    }
}

ApplicationUnit ApplicationUnit::ofControlGroups(const QByteArray& text) {
    const QByteArray unified = leafOf(text, {});
    // Where the old hierarchies are in use, the new one may be empty.
    return ApplicationUnit(unified.isEmpty() ? leafOf(text, "name=systemd") : unified);
}

void ApplicationUnit::readApplication(QByteArray name, bool isScope) {
    if (!isScope && name.contains('@')) {
        name.truncate(name.indexOf('@'));
        isScope = false;
    }
    const QList<QByteArray> parts = name.split('-');
    const qsizetype count = parts.size();
    const auto add = [this, &parts](qsizetype from, qsizetype to) {
        const QByteArray id =
            from < to ? withoutUnitEscapes(parts.mid(from, to - from).join('-')) : QByteArray();
        if (!id.isEmpty() && !ids_.contains(id)) {
            ids_.append(id);
        }
    };
    if (isScope) { // with a number at the end
        add(count > 2 ? 1 : 0, count - 1);
        add(0, count - 1);
    }
    add(count > 1 ? 1 : 0, count);
    add(0, count);
}

// The id of the entry that belongs to it is PACKAGE_PROGRAM.
void ApplicationUnit::readSnap(QByteArray name) {
    constexpr qsizetype uuidWithSeparator = 37;
    name.chop(std::min(name.size(), uuidWithSeparator));
    const QList<QByteArray> parts = name.split('.');
    if (parts.size() == 2 && !parts.at(0).isEmpty() && !parts.at(1).isEmpty()) {
        ids_.append(parts.join('_'));
    }
}

} // namespace quorvane
