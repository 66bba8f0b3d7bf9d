#include "platform/linux/helperclient/LinuxHelperInstaller.h"

#include "platform/linux/common/HelperNames.h"
#include "platform/linux/helperclient/OneLine.h"
#include "platform/linux/processes/ChildSignals.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {

namespace {

// pkexec's own status for a prompt that was closed; every other one is the helper's, or pkexec's
// with a reason on standard error.
constexpr int dismissedStatus = 126;

constexpr QLatin1String polkitService("org.freedesktop.PolicyKit1");

// How long a prompt that is to be closed may take to end, in milliseconds.
constexpr int promptPatience = 500;

QString helperIn(const QString& folder, const QString& label) {
    return folder + QLatin1Char('/') + label;
}

QString lastWords(const QByteArray& output) {
    constexpr qsizetype limit = 4096; // the end of what may be any amount of text
    const QStringList lines =
        QString::fromUtf8(output.right(limit)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines.isEmpty() ? QString() : oneLine(lines.last());
}

} // namespace

LinuxHelperInstaller::LinuxHelperInstaller(const QDBusConnection& systemBus, Places places)
    : bus_(systemBus), calls_(systemBus), places_(std::move(places)) {}

LinuxHelperInstaller::~LinuxHelperInstaller() {
    if (!process_) {
        return;
    }
    process_->disconnect(this);
    process_->terminate();
    if (!process_->waitForFinished(promptPatience)) {
        // It is root's by now: it cannot be ended, and is not to be waited for.
        process_->setParent(nullptr);
    }
}

bool LinuxHelperInstaller::isInstalled(const QString& label) const {
    return QFileInfo::exists(helperIn(places_.packagedFolder, label)) ||
           QFileInfo::exists(helperIn(places_.installedFolder, label));
}

void LinuxHelperInstaller::install(const QString& label, Done done) {
    const bool wasInstalling = std::any_of(changes_.begin(), changes_.end(), installs);
    std::vector<Done> asking;
    asking.push_back(std::move(done));
    // A removal that has not begun was asked for in this same turn of the main loop.
    if (!changes_.empty() && changes_.back().kind == Kind::Remove &&
        (changes_.size() > 1 || !isRunning_)) {
        std::vector<Done> removing = std::move(changes_.back().done);
        changes_.pop_back();
        asking.insert(asking.begin(), std::make_move_iterator(removing.begin()),
                      std::make_move_iterator(removing.end()));
        add({Kind::Replace, label, std::move(asking)});
    } else {
        add({Kind::Install, label, std::move(asking)});
    }
    if (!wasInstalling) {
        Q_EMIT installationBegan();
    }
}

void LinuxHelperInstaller::remove(const QString& label, Done done) {
    std::vector<Done> asking;
    asking.push_back(std::move(done));
    add({Kind::Remove, label, std::move(asking)});
}

/// Joins the last change where that does the same, else waits for its turn.
void LinuxHelperInstaller::add(Change change) {
    if (!changes_.empty() && installs(changes_.back()) && installs(change)) {
        std::vector<Done>& done = changes_.back().done;
        done.insert(done.end(), std::make_move_iterator(change.done.begin()),
                    std::make_move_iterator(change.done.end()));
        return;
    }
    changes_.push_back(std::move(change));
    if (changes_.size() == 1) {
        // Not before what else is asked for in this turn of the main loop is known.
        QMetaObject::invokeMethod(this, &LinuxHelperInstaller::begin, Qt::QueuedConnection);
    }
}

void LinuxHelperInstaller::begin() {
    if (isRunning_ || changes_.empty()) {
        return;
    }
    isRunning_ = true;
    const Change& change = changes_.front();
    if (change.kind == Kind::Remove) {
        isDismissed_ = false;
    }
    if (const std::optional<QString> error = objection()) {
        end(error);
    } else if (!bus_.isConnected()) {
        end(QStringLiteral("there is no system bus to ask for an administrator's consent"));
    } else {
        askForPolkit(QStringLiteral("ListNames"), QStringLiteral("ListActivatableNames"));
    }
}

bool LinuxHelperInstaller::exists(const QString& folder) const {
    return QFileInfo::exists(helperIn(folder, changes_.front().label));
}

std::optional<QString> LinuxHelperInstaller::objection() const {
    const Kind kind = changes_.front().kind;
    if (exists(places_.packagedFolder)) {
        return QStringLiteral("the helper belongs to a package of the system, which alone may "
                              "change it");
    }
    if (kind == Kind::Remove && !exists(places_.installedFolder)) {
        return QStringLiteral("no helper is installed");
    }
    if (kind == Kind::Remove) {
        return std::nullopt;
    }
    if (!exists(places_.bundledFolder)) {
        return QStringLiteral("this bundle carries no helper");
    }
    if (isDismissed_) {
        return QStringLiteral("the prompt for an administrator's password was closed before; it "
                              "is shown again after the next start");
    }
    return std::nullopt;
}

// pkexec without polkit would wait for it in vain; and whoever runs this on a bus of his own does
// not want to be asked for his password.
void LinuxHelperInstaller::askForPolkit(const QString& list, const QString& otherList) {
    calls_.ask(BusCall::toBus(list, {}, BusCall::usualLimit),
               [this, otherList](const BusAnswer& names) { polkitNames(names, otherList); });
}

void LinuxHelperInstaller::polkitNames(const BusAnswer& names, const QString& otherList) {
    if (names.value().toStringList().contains(polkitService)) {
        run();
    } else if (!otherList.isEmpty()) {
        askForPolkit(otherList, {});
    } else {
        end(QStringLiteral("polkit does not run here, so no administrator can be asked"));
    }
}

void LinuxHelperInstaller::run() {
    const Change& change = changes_.front();
    const bool isRemoval = change.kind == Kind::Remove;
    const QLatin1String option = isRemoval                      ? helpernames::removeOption
                                 : change.kind == Kind::Replace ? helpernames::replaceOption
                                                                : helpernames::installOption;
    const QString folder = isRemoval ? places_.installedFolder : places_.bundledFolder;
    process_ = new QProcess(this);
    process_->setProgram(places_.pkexec);
    process_->setArguments({QStringLiteral("--disable-internal-agent"),
                            helperIn(folder, change.label), QString(option)});
    process_->setStandardInputFile(QProcess::nullDevice());
    process_->setStandardOutputFile(QProcess::nullDevice());
    process_->setChildProcessModifier(releaseSignals);
    connect(process_, &QProcess::finished, this, &LinuxHelperInstaller::processEnded);
    connect(process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) { // `finished` does not come then
            end(oneLine(places_.pkexec + QStringLiteral(": ") + process_->errorString()));
        }
    });
    process_->start(QIODevice::ReadOnly);
}

void LinuxHelperInstaller::processEnded(int exitCode, QProcess::ExitStatus exitStatus) {
    const bool isNormal = exitStatus == QProcess::NormalExit;
    if (isNormal && exitCode == 0) {
        end(std::nullopt);
        return;
    }
    if (isNormal && exitCode == dismissedStatus) {
        isDismissed_ = installs(changes_.front());
        end(QStringLiteral("the prompt for an administrator's password was closed"));
        return;
    }
    const QString reason = lastWords(process_->readAllStandardError());
    if (!reason.isEmpty()) {
        end(reason);
    } else {
        end(isNormal ? QStringLiteral("it ended with the status %1").arg(exitCode)
                     : QStringLiteral("it was ended by a signal"));
    }
}

void LinuxHelperInstaller::end(const std::optional<QString>& error) {
    if (process_) {
        process_->deleteLater();
        process_.clear();
    }
    const Change change = std::move(changes_.front());
    changes_.pop_front();
    isRunning_ = false;
    if (!changes_.empty()) {
        QMetaObject::invokeMethod(this, &LinuxHelperInstaller::begin, Qt::QueuedConnection);
    }
    for (const Done& done : change.done) {
        done(error);
    }
    if (installs(change) && !std::any_of(changes_.begin(), changes_.end(), installs)) {
        Q_EMIT installationEnded(isInstalled(change.label) ? std::nullopt : error);
    }
}

} // namespace quorvane
