#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace quorvane {

/// Whether anything has changed in some folders since they were looked at, some of which may not
/// exist yet. Nothing is told: whoever wants to know asks, and until then a change wakes nobody.
/// One thread at a time.
class FolderChanges {
  public:
    FolderChanges();
    ~FolderChanges();
    FolderChanges(const FolderChanges&) = delete;
    FolderChanges& operator=(const FolderChanges&) = delete;

    /// Watches a folder, and not those in it; one that does not exist is waited for. To be called
    /// before the folder is read.
    void add(const QString& folder);

    /// Whether something may have changed since the last time that this was asked. Forgets the
    /// folders when it has: they are to be added anew.
    [[nodiscard]] bool take();

  private:
    struct Watch {
        int number = -1;
        QByteArray awaited; ///< the only name in it that counts; empty: every name
    };

    void open();
    void close();
    [[nodiscard]] bool readEvents();
    [[nodiscard]] bool concerns(int number, const QByteArray& name) const;

    int inotify_ = -1;
    QList<Watch> watches_;
};

} // namespace quorvane
