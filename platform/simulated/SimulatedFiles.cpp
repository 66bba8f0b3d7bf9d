#include "platform/simulated/SimulatedFiles.h"

#include <QFileInfo>

namespace quorvane {

QString SimulatedFiles::applicationSupportFolder() const {
    return QStringLiteral("/home/user/.local/share");
}

Files::Contents SimulatedFiles::read(const QString& path) const {
    if (unreadable_.contains(path)) {
        return {std::nullopt, true, path + QStringLiteral(": Input/output error")};
    }
    if (!files_.contains(path)) {
        return {std::nullopt, false, path + QStringLiteral(": No such file or directory")};
    }
    return {files_.value(path), true, {}};
}

Files::Written SimulatedFiles::writeAtomically(const QString& path, const QByteArray& data,
                                               Readers readers) {
    const QString folder = QFileInfo(path).path();
    if (readOnly_) {
        return {path + QStringLiteral(": Read-only file system")};
    }
    if (folder != applicationSupportFolder() && folder != QLatin1String("/tmp") &&
        !folders_.contains(folder)) {
        return {path + QStringLiteral(": No such file or directory")};
    }
    files_.insert(path, data);
    writes_.append(path);
    if (readers == Readers::Everybody) {
        open_.insert(path);
    }
    return {};
}

std::optional<QString> SimulatedFiles::keepAside(const QString& path) {
    if (readOnly_) {
        return std::nullopt;
    }
    const QString aside = path + QStringLiteral(".corrupt");
    files_.insert(aside, files_.take(path));
    unreadable_.remove(path);
    return aside;
}

bool SimulatedFiles::createFolder(const QString& path) {
    if (!readOnly_) {
        folders_.insert(path);
    }
    return folders_.contains(path);
}

void SimulatedFiles::put(const QString& path, const QByteArray& data) {
    folders_.insert(QFileInfo(path).path());
    files_.insert(path, data);
}

} // namespace quorvane
