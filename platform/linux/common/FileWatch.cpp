#include "platform/linux/common/FileWatch.h"

#include "platform/linux/common/WholeFile.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

// A file that is replaced or removed shows as IN_ATTRIB first (its number of links), and as
// IN_DELETE_SELF only when the last process has closed it.
constexpr std::uint32_t fileEvents = IN_MODIFY | IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF;

// IN_ATTRIB: a file that was not readable may become so.
constexpr std::uint32_t folderEvents =
    IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF | IN_ONLYDIR;

// The watched place itself is no longer what it was.
constexpr std::uint32_t placeGone = IN_MOVE_SELF | IN_DELETE_SELF | IN_IGNORED | IN_UNMOUNT;

struct Place {
    QString path;
    QString awaited; ///< empty: the path is the file itself
};

bool canBeWatched(const Place& place) {
    return ::access(QFile::encodeName(place.path).constData(), R_OK) == 0 &&
           (place.awaited.isEmpty() || QFileInfo(place.path).isDir());
}

// What can be watched of `target` now: itself, else the nearest folder above that can be read.
Place nearestPlace(const QString& target) {
    Place place{target, {}};
    while (!canBeWatched(place) && place.path != QLatin1String("/")) {
        const QFileInfo info(place.path);
        place = {info.path(), info.fileName()};
    }
    return place;
}

} // namespace

FileWatch::FileWatch(QString path, Links links, QObject* parent)
    : QObject(parent), path_(std::move(path)), links_(links),
      inotify_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (inotify_ < 0) {
        error_ = qt_error_string(errno);
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(inotify_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &FileWatch::readEvents);
    arm();
}

FileWatch::~FileWatch() {
    notifier_.reset();
    if (inotify_ >= 0) {
        ::close(inotify_);
    }
}

void FileWatch::arm() {
    armLink();
    const QString target = links_ == Links::Followed ? WholeFile::resolved(path_) : path_;
    // Between looking for the nearest place and watching it a nearer one may have appeared, so the
    // look is repeated afterwards. Whoever creates and removes faster than that causes new events.
    constexpr int attempts = 8;
    Place place = nearestPlace(target);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const int watch = add(place.path, !place.awaited.isEmpty());
        if (watch >= 0) {
            exchange(placeWatch_, watch);
            awaited_ = place.awaited;
        }
        const Place now = nearestPlace(target);
        if (watch >= 0 && now.path == place.path) {
            return;
        }
        place = now;
    }
}

void FileWatch::armLink() {
    const bool isLink = QFileInfo(path_).isSymLink();
    exchange(linkWatch_, isLink
                             ? ::inotify_add_watch(inotify_, QFile::encodeName(path_).constData(),
                                                   fileEvents | IN_DONT_FOLLOW)
                             : -1);
}

int FileWatch::add(const QString& place, bool isFolder) {
    const std::uint32_t events = isFolder ? folderEvents : fileEvents;
    const std::uint32_t kind = links_ == Links::NotFollowed && !isFolder ? IN_DONT_FOLLOW : 0;
    const int watch =
        ::inotify_add_watch(inotify_, QFile::encodeName(place).constData(), events | kind);
    error_ = watch < 0 ? qt_error_string(errno) : QString();
    return watch;
}

// The kernel gives the same number for the same inode; one that went with its inode is gone
// already, and removing it once more does no harm.
void FileWatch::exchange(int& watch, int newWatch) const {
    if (watch >= 0 && watch != newWatch) {
        ::inotify_rm_watch(inotify_, watch);
    }
    watch = newWatch;
}

void FileWatch::readEvents() {
    bool concerned = false;
    alignas(inotify_event) std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t length = ::read(inotify_, buffer.data(), buffer.size());
        if (length <= 0) {
            break;
        }
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(length);) {
            const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + offset);
            concerned = concerned || concernsTheFile(event);
            offset += sizeof(inotify_event) + event.len;
        }
    }
    if (concerned) {
        arm();
        Q_EMIT touched();
    }
}

bool FileWatch::concernsTheFile(const inotify_event& event) const {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        return true;
    }
    if (event.wd == linkWatch_) {
        return true;
    }
    if (event.wd != placeWatch_) {
        return false;
    }
    return awaited_.isEmpty() || (event.mask & placeGone) != 0 ||
           (event.len > 0 && QFile::decodeName(event.name) == awaited_);
}

} // namespace quorvane
