#pragma once

#include "platform/HelperInstaller.h"
#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <deque>
#include <optional>
#include <vector>

namespace quorvane {

/// Has an administrator install or remove the helper: its executable does that itself, run as root
/// through polkit's pkexec, which asks for the password on the user's desktop.
///
/// - There is one prompt at a time. Who asks for an installation while one is under way joins it.
/// - A removal directly followed by an installation is one change with one prompt.
/// - A prompt for an installation that the user has closed is not shown again as long as this
///   object lives, unless the helper is removed on its own meanwhile.
/// - The helper of a distribution's package is the package manager's: it is never touched.
/// - Without polkit on the system bus nothing is started.
class LinuxHelperInstaller final : public QObject, public HelperInstaller {
    Q_OBJECT

  public:
    struct Places {
        QString bundledFolder; ///< where the helper lies that comes with the running bundle
        QString packagedFolder;
        QString installedFolder;
        QString pkexec = QStringLiteral("/usr/bin/pkexec");
    };

    LinuxHelperInstaller(const QDBusConnection& systemBus, Places places);

    /// A prompt that nobody has answered is closed. A change that root makes already goes on.
    ~LinuxHelperInstaller() override;

    LinuxHelperInstaller(const LinuxHelperInstaller&) = delete;
    LinuxHelperInstaller& operator=(const LinuxHelperInstaller&) = delete;

    [[nodiscard]] bool isInstalled(const QString& label) const override;
    void install(const QString& label, Done done) override;
    void remove(const QString& label, Done done) override;

  Q_SIGNALS:
    /// An installation has been asked for; before that returns.
    void installationBegan();

    /// No installation is under way any more, and everybody has been told. The error only if there
    /// is no helper now: one that could not be replaced is better than none.
    void installationEnded(const std::optional<QString>& error);

  private:
    enum class Kind { Install, Remove, Replace };

    struct Change {
        Kind kind;
        QString label;
        std::vector<Done> done; ///< in the order in which they asked
    };

    [[nodiscard]] static bool installs(const Change& change) { return change.kind != Kind::Remove; }

    void add(Change change);
    void begin();
    [[nodiscard]] std::optional<QString> objection() const;
    [[nodiscard]] bool exists(const QString& folder) const;
    void askForPolkit(const QString& list, const QString& otherList);
    void polkitNames(const BusAnswer& names, const QString& otherList);
    void run();
    void processEnded(int exitCode, QProcess::ExitStatus exitStatus);
    void end(const std::optional<QString>& error);

    QDBusConnection bus_;
    BusCalls calls_;
    Places places_;
    std::deque<Change> changes_; ///< the first one is under way once `isRunning_`
    bool isRunning_ = false;
    bool isDismissed_ = false;
    QPointer<QProcess> process_;
};

} // namespace quorvane
