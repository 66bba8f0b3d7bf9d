#include "platform/linux/StatusImages.h"

#include <QFileInfo>

#include <utility>

namespace quorvane {

StatusImages::StatusImages(QString folder, LogSink& log) : folder_(std::move(folder)), log_(log) {}

QString StatusImages::iconName(const QString& imageName, bool isTemplate) {
    if (imageName.isEmpty()) {
        return {};
    }
    const QString stencil = QStringLiteral("quorvane-%1-symbolic").arg(imageName);
    if (isTemplate && contains(stencil)) {
        return stencil;
    }
    if (contains(imageName)) {
        return imageName;
    }
    reportMissing(imageName);
    return {};
}

// A name is never a path: a host would take one from anywhere.
bool StatusImages::contains(const QString& name) const {
    const QString path = folder_ + QLatin1Char('/') + name;
    return !name.contains(QLatin1Char('/')) && (QFileInfo::exists(path + QLatin1String(".svg")) ||
                                                QFileInfo::exists(path + QLatin1String(".png")));
}

void StatusImages::reportMissing(const QString& imageName) {
    const bool hasFolder = QFileInfo(folder_).isDir();
    const QString what = hasFolder ? imageName : QString();
    if (reported_.contains(what)) {
        return;
    }
    reported_.insert(what);
    log_.write(hasFolder
                   ? QStringLiteral("There is no status image \"%1\" in %2; the status item "
                                    "shows none.")
                         .arg(imageName, folder_)
                   : QStringLiteral("There is no folder %1 with the status images; the status "
                                    "item shows none. Install Quorvane again.")
                         .arg(folder_));
}

} // namespace quorvane
