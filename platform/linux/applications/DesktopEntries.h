#pragma once

#include "platform/linux/applications/DesktopEntry.h"
#include "platform/linux/applications/FolderChanges.h"

#include <QStringList>

#include <vector>

namespace quorvane {

/// The installed applications. They are read when the first one is asked for, and again at the
/// first question after a change on disk; nothing is done in between. Comparisons do not
/// distinguish the letters A-Z from a-z. What a question returns is good until the next one. One
/// thread at a time.
class DesktopEntries {
  public:
    /// `folders` are those that hold the entries; an earlier one hides the later ones' entries of
    /// the same id.
    explicit DesktopEntries(QStringList folders);

    /// Those of the user, of the system, of Flatpak and of Snap.
    [[nodiscard]] static QStringList foldersOfTheSession();

    /// With this id, null when there is none; likewise below.
    [[nodiscard]] const DesktopEntry* withId(const QByteArray& id);

    [[nodiscard]] const DesktopEntry* withStartupWmClass(const QByteArray& windowClass);

    /// Of several that start this program the one that is called like it, else the first.
    [[nodiscard]] const DesktopEntry* withProgram(const QByteArray& program);

    [[nodiscard]] std::size_t count();

  private:
    void refresh();
    void load();
    void readFolder(const QString& folder, const QByteArray& idPrefix, int depth);
    void readEntry(const QString& path, const QByteArray& id);
    [[nodiscard]] const DesktopEntry* find(QByteArray DesktopEntry::*field,
                                           const QByteArray& value);

    const QStringList folders_;
    FolderChanges changes_;
    std::vector<DesktopEntry> entries_;
    QList<QByteArray> languages_;
    QStringList visited_; ///< folders that have been read in this pass
    bool isLoaded_ = false;
};

} // namespace quorvane
