#include "apps/helper/LoadedList.h"

#include <QFile>
#include <QSaveFile>

#include <utility>

namespace quorvane {

namespace {

QByteArray loadedLine(int index, const Extension& extension) {
    return QStringLiteral("%1    0 0                  0          0          %2 (%3)\n")
        .arg(index, 5)
        .arg(extension.identifier, extension.version)
        .toUtf8();
}

} // namespace

LoadedList::LoadedList(QString path) : path_(std::move(path)) {}

std::optional<QString> LoadedList::write(const QList<Extension>& loaded) const {
    if (loaded.isEmpty()) {
        QFile file(path_);
        return !file.exists() || file.remove() ? std::nullopt : std::optional(file.errorString());
    }
    QByteArray text;
    int index = 0;
    for (const Extension& each : loaded) {
        text += loadedLine(++index, each);
    }
    constexpr auto forAllToRead = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                  QFileDevice::ReadGroup | QFileDevice::ReadOther;
    QSaveFile file(path_);
    const bool isDone = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() &&
                        file.setPermissions(forAllToRead) && file.commit();
    return isDone ? std::nullopt : std::optional(file.errorString());
}

} // namespace quorvane
