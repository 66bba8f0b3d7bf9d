#include "platform/linux/applications/DesktopEntries.h"

#include "platform/linux/common/BoundedFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

// The entries of large programs with all their translations have 40 KB. What a broken one has
// beyond this is not looked at.
constexpr qsizetype longestEntry = qsizetype{256} * 1024;

// Desktops install a few hundred. Whoever has more than this has a broken folder.
constexpr std::size_t mostEntries = 5000;

// Folders in folders are rare, and links may make loops of them.
constexpr int deepestFolder = 4;

bool isSame(const QByteArray& one, const QByteArray& other) {
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

QString folderOf(const char* variable, const QString& standard) {
    const QString folder = qEnvironmentVariable(variable);
    return folder.startsWith(QLatin1Char('/')) ? folder : standard;
}

} // namespace

DesktopEntries::DesktopEntries(QStringList folders) : folders_(std::move(folders)) {}

QStringList DesktopEntries::foldersOfTheSession() {
    const QString applications = QStringLiteral("/applications");
    const QString home =
        folderOf("XDG_DATA_HOME", QDir::homePath() + QStringLiteral("/.local/share"));
    QString system = qEnvironmentVariable("XDG_DATA_DIRS");
    if (system.isEmpty()) {
        system = QStringLiteral("/usr/local/share:/usr/share");
    }
    QStringList folders{home + applications,
                        home + QStringLiteral("/flatpak/exports/share") + applications};
    for (const QString& folder : system.split(QLatin1Char(':'))) {
        if (folder.startsWith(QLatin1Char('/'))) {
            folders.append(QDir::cleanPath(folder + applications));
        }
    }
    folders.append(QStringLiteral("/var/lib/flatpak/exports/share") + applications);
    folders.append(QStringLiteral("/var/lib/snapd/desktop") + applications);
    folders.removeDuplicates();
    return folders;
}

const DesktopEntry* DesktopEntries::withId(const QByteArray& id) {
    return find(&DesktopEntry::id, id);
}

const DesktopEntry* DesktopEntries::withStartupWmClass(const QByteArray& windowClass) {
    return find(&DesktopEntry::startupWmClass, windowClass);
}

const DesktopEntry* DesktopEntries::withProgram(const QByteArray& program) {
    const DesktopEntry* named = withId(program);
    return named != nullptr && isSame(named->program, program)
               ? named
               : find(&DesktopEntry::program, program);
}

std::size_t DesktopEntries::count() {
    refresh();
    return entries_.size();
}

const DesktopEntry* DesktopEntries::find(QByteArray DesktopEntry::*field, const QByteArray& value) {
    refresh();
    if (value.isEmpty()) {
        return nullptr;
    }
    const auto found = std::find_if(
        entries_.cbegin(), entries_.cend(),
        [field, &value](const DesktopEntry& entry) { return isSame(entry.*field, value); });
    return found == entries_.cend() ? nullptr : &*found;
}

void DesktopEntries::refresh() {
    if (changes_.take() || !isLoaded_) {
        load();
    }
}

void DesktopEntries::load() {
    entries_.clear();
    visited_.clear();
    languages_ = DesktopEntry::languagesOfTheUser();
    for (const QString& folder : folders_) {
        readFolder(folder, {}, 0);
    }
    std::erase_if(entries_, [](const DesktopEntry& entry) { return entry.isDeleted; });
    entries_.shrink_to_fit();
    visited_.clear();
    isLoaded_ = true;
}

void DesktopEntries::readFolder(const QString& folder, const QByteArray& idPrefix, int depth) {
    const QString place = QFileInfo(folder).canonicalFilePath();
    changes_.add(folder);
    if (place.isEmpty() || visited_.contains(place)) {
        return;
    }
    visited_.append(place);
    // In the order of their names, so that of two equal ones always the same is found.
    const QFileInfoList files =
        QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& file : files) {
        if (entries_.size() >= mostEntries) {
            return;
        }
        const QByteArray name = file.fileName().toUtf8();
        if (file.isDir()) {
            if (depth < deepestFolder) {
                readFolder(file.filePath(), idPrefix + name + '-', depth + 1);
            }
        } else if (name.endsWith(".desktop")) {
            readEntry(file.filePath(), idPrefix + name.chopped(8));
        }
    }
}

void DesktopEntries::readEntry(const QString& path, const QByteArray& id) {
    const bool isHidden = std::any_of(entries_.cbegin(), entries_.cend(),
                                      [&id](const DesktopEntry& entry) { return entry.id == id; });
    const std::optional<QByteArray> text =
        isHidden ? std::nullopt : readBounded(path, longestEntry);
    if (!text) {
        return;
    }
    if (std::optional<DesktopEntry> entry = DesktopEntry::parse(id, *text, languages_)) {
        entries_.push_back(std::move(*entry));
    }
}

} // namespace quorvane
