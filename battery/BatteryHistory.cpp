#include "battery/BatteryHistory.h"

#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "plist/PropertyList.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

constexpr qint64 keptSeconds = 21600; // six hours

const QString pointsKey = QStringLiteral("dataPoints");
const QString timesKey = QStringLiteral("dataTimes");

template <class T>
QVariantList boxed(const QList<T>& values) {
    return {values.begin(), values.end()};
}

} // namespace

BatteryHistory::BatteryHistory(QString path) : path_(std::move(path)) {}

void BatteryHistory::append(int percent, const QDateTime& time) {
    dataPoints_.append(percent);
    dataTimes_.append(time);
}

bool BatteryHistory::readData() {
    const Files::Contents file = platform().files().read(path_);
    const PropertyListResult list =
        file.data ? readPropertyList(*file.data) : PropertyListResult{std::nullopt, {}};
    if (!list.value || list.value->metaType() != QMetaType::fromType<QVariantMap>()) {
        fileMakesNoSense_ = file.exists;
        return false;
    }
    const QVariantMap root = list.value->toMap();
    for (const QVariant& point : root.value(pointsKey).toList()) {
        dataPoints_.append(point.toInt());
    }
    for (const QVariant& time : root.value(timesKey).toList()) {
        dataTimes_.append(time.toDateTime());
    }
    return true;
}

bool BatteryHistory::saveData(const QDateTime& now) {
    const auto index = static_cast<qsizetype>(findDate(now.addSecs(-keptSeconds)));
    const qsizetype start = std::max<qsizetype>(index - 1, 0);
    const qsizetype length = std::max<qsizetype>(dataPoints_.size() - index, 0);
    const QVariantMap root{{pointsKey, boxed(dataPoints_.mid(start, length))},
                           {timesKey, boxed(dataTimes_.mid(start, length))}};

    Files& files = platform().files();
    if (!files.createFolder(QFileInfo(path_).path())) {
        return false;
    }
    if (fileMakesNoSense_) {
        const std::optional<QString> aside = files.keepAside(path_);
        if (!aside) {
            log(QStringLiteral("%1 could not be read and not be moved aside; the battery history "
                               "is not stored. Move the file away.")
                    .arg(path_));
            return false;
        }
        log(QStringLiteral("%1 could not be read; it is kept as %2.").arg(path_, *aside));
        fileMakesNoSense_ = false;
    }
    const std::optional<QByteArray> xml = writePropertyList(root);
    return xml && files.writeAtomically(path_, *xml);
}

std::size_t BatteryHistory::findDate(const QDateTime& date) const {
    const auto place = std::lower_bound(dataTimes_.begin(), dataTimes_.end(), date);
    return static_cast<std::size_t>(place - dataTimes_.begin());
}

std::int32_t BatteryHistory::percentAtTime(const QDateTime& date) const {
    auto index = static_cast<qsizetype>(findDate(date));
    if (index == dataTimes_.size()) {
        --index;
    }
    return dataPoints_.at(index);
}

} // namespace quorvane
