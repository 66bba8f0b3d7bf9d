#include "platform/linux/statusitem/StatusImages.h"

#include <QFileInfo>

#include <utility>

namespace quorvane {

namespace {

QString hostName(const QString& imageName) {
    return QLatin1String("quorvane_") +
           QString(imageName).replace(QLatin1Char('-'), QLatin1Char('_'));
}

} // namespace

StatusImages::StatusImages(QString folder, LogSink& log) : folder_(std::move(folder)), log_(log) {}

QString StatusImages::iconName(const QString& imageName, bool isTemplate) {
    if (imageName.isEmpty()) {
        return {};
    }
    const QString name = hostName(imageName);
    const QString stencil = name + QLatin1String("-symbolic");
    for (const QString& candidate : {isTemplate ? stencil : name, name, imageName}) {
        if (contains(candidate)) {
            return candidate;
        }
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
