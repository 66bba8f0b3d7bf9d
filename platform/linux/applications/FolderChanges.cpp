#include "platform/linux/applications/FolderChanges.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <sys/inotify.h>
#include <unistd.h>

namespace quorvane {

namespace {

// IN_CLOSE_WRITE instead of IN_MODIFY: an entry that is being written is no use yet.
constexpr std::uint32_t contentEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                        IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF |
                                        IN_ONLYDIR;
constexpr std::uint32_t arrivalEvents =
    IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

} // namespace

FolderChanges::FolderChanges() {
    open();
}

FolderChanges::~FolderChanges() {
    close();
}

void FolderChanges::open() {
    inotify_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
}

void FolderChanges::close() {
    if (inotify_ >= 0) {
        ::close(inotify_);
    }
    inotify_ = -1;
    watches_.clear();
}

void FolderChanges::add(const QString& folder) {
    if (inotify_ < 0) {
        return;
    }
    int number = ::inotify_add_watch(inotify_, QFile::encodeName(folder).constData(),
                                     contentEvents | IN_MASK_ADD);
    QByteArray awaited;
    for (QString place = folder; number < 0 && place != QLatin1String("/");) {
        const QFileInfo info(place);
        awaited = QFile::encodeName(info.fileName());
        place = info.path();
        number = ::inotify_add_watch(inotify_, QFile::encodeName(place).constData(),
                                     arrivalEvents | IN_MASK_ADD);
    }
    watches_.append({number, awaited});
}

bool FolderChanges::take() {
    const bool hasChanged = readEvents();
    if (hasChanged) {
        // The queue belongs to the old watches; a new instance has none of their late events.
        close();
        open();
    }
    return hasChanged;
}

bool FolderChanges::readEvents() {
    bool hasChanged = false;
    alignas(inotify_event) std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t length = inotify_ < 0 ? 0 : ::read(inotify_, buffer.data(), buffer.size());
        if (length <= 0) {
            return hasChanged;
        }
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(length);) {
            const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + offset);
            const QByteArray name = event.len > 0 ? QByteArray(event.name) : QByteArray();
            hasChanged =
                hasChanged || (event.mask & IN_Q_OVERFLOW) != 0 || concerns(event.wd, name);
            offset += sizeof(inotify_event) + event.len;
        }
    }
}

// Without a name it is the folder itself. Several folders may wait in the same one.
bool FolderChanges::concerns(int number, const QByteArray& name) const {
    return name.isEmpty() ||
           std::any_of(watches_.cbegin(), watches_.cend(), [number, &name](const Watch& watch) {
               return watch.number == number && (watch.awaited.isEmpty() || watch.awaited == name);
           });
}

} // namespace quorvane
