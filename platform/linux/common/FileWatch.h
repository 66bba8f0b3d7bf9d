#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

struct inotify_event;

namespace quorvane {

/// Notices every change of one file that may come, go and be replaced. Main thread only; sleeps in
/// the event loop and costs nothing while nothing changes.
///
/// While the file exists only the file itself is watched, so what other programs do in its folder
/// wakes nobody. While it does not exist (or may not be read), the nearest existing folder above it
/// is watched instead.
class FileWatch final : public QObject {
    Q_OBJECT

  public:
    enum class Links {
        Followed,    ///< of a symbolic link both the link and its target are watched
        NotFollowed, ///< a link counts as the file; for paths at which anybody may put one
    };

    explicit FileWatch(QString path, Links links = Links::Followed, QObject* parent = nullptr);
    ~FileWatch() override;
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

    /// Why nothing can be watched, in words; empty while all is well.
    [[nodiscard]] QString error() const { return error_; }

  Q_SIGNALS:
    /// The file may have changed, appeared or gone. It is already watched again, so whoever reads
    /// it now hears of everything that happens to it afterwards.
    void touched();

  private:
    void arm();
    void armLink();
    void readEvents();
    [[nodiscard]] bool concernsTheFile(const inotify_event& event) const;
    [[nodiscard]] int add(const QString& place, bool isFolder);
    void exchange(int& watch, int newWatch) const;

    const QString path_;
    const Links links_;
    int inotify_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    int linkWatch_ = -1;  ///< on the symbolic link itself, where there is one
    int placeWatch_ = -1; ///< on the file, or on a folder above it
    QString awaited_;     ///< the name whose appearance in that folder counts; empty: the file
    QString error_;
};

} // namespace quorvane
