#pragma once

#include "platform/UpdateService.h"
#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariant>

#include <vector>

namespace quorvane {

/// New versions through PackageKit, which every packaged desktop has in front of its own package
/// manager. Asks about the package that this program belongs to and about no other, and asks
/// nothing on a metered connection.
class PackageKitUpdates final : public QObject, public UpdateService {
    Q_OBJECT

  public:
    /// `program` is the absolute path of a file of this program's package.
    PackageKitUpdates(const QDBusConnection& systemBus, QString program);

    void look(Download download, std::function<void(const UpdateStatus&)> done) override;

  private:
    using Answered = std::function<void(const QStringList& packages)>;

    void askWhetherMetered();
    void askForOwnPackage();
    void askForUpdates(const QString& ownPackage);
    void fetch(const QString& package);
    void ask(const QString& method, const QVariantList& arguments, const Answered& answered);
    void tell(UpdateStatus::Kind kind, const QString& text = {});

    QDBusConnection bus_;
    BusCalls calls_;
    QString program_;
    Download download_ = Download::No;
    std::vector<std::function<void(const UpdateStatus&)>> waiting_; ///< not empty: one is under way
};

} // namespace quorvane
