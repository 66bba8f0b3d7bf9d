#include "platform/linux/applications/X11WindowList.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace quorvane {

namespace {

// More windows than any screen can show, and 64 KB.
constexpr std::uint32_t mostWindows = 16384;

constexpr const char* noServer = "no X server";

xcb_window_t numberOf(WindowId window) {
    return static_cast<xcb_window_t>(window);
}

std::vector<std::uint32_t> windowsIn(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->format != 32) {
        return {};
    }
    const auto* const first = static_cast<const std::uint32_t*>(::xcb_get_property_value(reply));
    return {first, first + reply->value_len};
}

} // namespace

X11WindowList::X11WindowList() = default;

X11WindowList::~X11WindowList() = default;

void X11WindowList::open() {
    if (connectNow()) {
        return;
    }
    Q_EMIT unavailable(QLatin1String(noServer));
    const QString socket = X11Connection::socketPath();
    if (!socket.isEmpty()) {
        watch_ = std::make_unique<X11ServerWatch>(socket);
        connect(watch_.get(), &X11ServerWatch::worthATry, this, [this] {
            if (connectNow()) {
                watch_.release()->deleteLater(); // it is the one that emits right now
            }
        });
    }
}

bool X11WindowList::connectNow() {
    connection_ = X11Connection::open();
    if (!connection_) {
        return false;
    }
    isXwayland_ = qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    const std::uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
    ::xcb_change_window_attributes(connection_->xcb(), connection_->root(), XCB_CW_EVENT_MASK,
                                   &wanted);
    notifier_ = std::make_unique<QSocketNotifier>(::xcb_get_file_descriptor(connection_->xcb()),
                                                  QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &X11WindowList::wake);
    isListStale_ = true;
    isActiveStale_ = true;
    // Behind whoever has just been told that there is no server.
    QMetaObject::invokeMethod(this, &X11WindowList::work, Qt::QueuedConnection);
    return true;
}

std::vector<SessionWindow> X11WindowList::windows() const {
    std::vector<SessionWindow> windows;
    windows.reserve(listed_.size());
    const auto add = [this, &windows](std::uint32_t id) {
        const auto known = known_.find(id);
        if (known == known_.cend() || !known->second.isRead) {
            return;
        }
        const std::int32_t process = known->second.window.processIdentifier;
        if (process != 0 && process != manager_ && process != connection_->serverProcess()) {
            windows.push_back(known->second.window);
        }
    };
    std::for_each(listed_.cbegin(), listed_.cend(), add);
    return windows;
}

void X11WindowList::hide(WindowId window) {
    constexpr std::uint32_t iconicState = 3; // of the conventions between clients
    if (connection_) {
        connection_->askManager(numberOf(window), X11Atom::ChangeState, {iconicState, 0, 0, 0, 0});
        flush();
    }
}

void X11WindowList::close(WindowId window) {
    constexpr std::uint32_t asTheUser = 2;
    if (connection_) {
        connection_->askManager(numberOf(window), X11Atom::CloseWindow,
                                {XCB_CURRENT_TIME, asTheUser, 0, 0, 0});
        flush();
    }
}

Result<Done> X11WindowList::tellsFront() const {
    if (!connection_) {
        return Failure{QLatin1String(noServer)};
    }
    return isXwayland_ ? Result<Done>(Failure{leavesOut()}) : Done();
}

Result<Done> X11WindowList::canHide() const {
    return connection_ ? Result<Done>(Done()) : Failure{QLatin1String(noServer)};
}

QString X11WindowList::leavesOut() const {
    return connection_ && isXwayland_
               ? QStringLiteral("This is a Wayland session: only the windows of applications that "
                                "use Xwayland are seen.")
               : QString();
}

// What the library reads while it writes would not wake the notifier any more.
void X11WindowList::flush() {
    ::xcb_flush(connection_->xcb());
    QMetaObject::invokeMethod(this, &X11WindowList::work, Qt::QueuedConnection);
}

void X11WindowList::wake() {
    ++wakeUps_;
    work();
}

void X11WindowList::work() {
    if (!connection_) {
        return;
    }
    for (bool goesOn = true; goesOn;) {
        const bool hadEvents = takeEvents(&::xcb_poll_for_event);
        const bool hadAnswers = takeAnswers();
        // What was read from the socket while looking for answers wakes nobody any more.
        const bool hadMore = takeEvents(&::xcb_poll_for_queued_event);
        goesOn = ask() || hadEvents || hadAnswers || hadMore;
    }
    if (connection_->isBroken()) {
        lose();
    } else if (isSettled() && std::exchange(hasChanged_, false)) {
        Q_EMIT changed();
    }
}

bool X11WindowList::takeEvents(NextEvent* next) {
    bool hadAny = false;
    while (const X11Reply<xcb_generic_event_t> event{next(connection_->xcb())}) {
        hadAny = true;
        if ((event->response_type & ~0x80U) != XCB_PROPERTY_NOTIFY) {
            continue;
        }
        const auto* const notice =
            reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
        isListStale_ = isListStale_ || notice->atom == connection_->atom(X11Atom::ClientList);
        isActiveStale_ = isActiveStale_ || notice->atom == connection_->atom(X11Atom::ActiveWindow);
    }
    return hadAny;
}

// Several changes at once are one question. One while a question is under way is another question:
// the answer may be older than the change.
bool X11WindowList::ask() {
    bool hasAsked = false;
    if (isListStale_ && listRequest_ == 0) {
        isListStale_ = false;
        listRequest_ = askRoot(X11Atom::ClientList, mostWindows);
        hasAsked = true;
    }
    if (isActiveStale_ && activeRequest_ == 0) {
        isActiveStale_ = false;
        activeRequest_ = askRoot(X11Atom::ActiveWindow, 1);
        hasAsked = true;
    }
    ::xcb_flush(connection_->xcb());
    return hasAsked;
}

unsigned X11WindowList::askRoot(X11Atom property, std::uint32_t length) const {
    return ::xcb_get_property(connection_->xcb(), 0, connection_->root(),
                              connection_->atom(property), XCB_ATOM_WINDOW, 0, length)
        .sequence;
}

bool X11WindowList::takeAnswers() {
    const bool hadList = takeList();
    const bool hadActive = takeActive();
    const bool hadManager = takeManager();
    bool hadWindows = false;
    while (takeWindow()) {
        hadWindows = true;
    }
    return hadList || hadActive || hadManager || hadWindows;
}

bool X11WindowList::takeList() {
    X11Reply<xcb_get_property_reply_t> reply;
    if (listRequest_ == 0 || !connection_->poll(listRequest_, reply)) {
        return false;
    }
    listRequest_ = 0;
    setList(windowsIn(reply.get()));
    return true;
}

bool X11WindowList::takeActive() {
    X11Reply<xcb_get_property_reply_t> reply;
    if (activeRequest_ == 0 || !connection_->poll(activeRequest_, reply)) {
        return false;
    }
    activeRequest_ = 0;
    const std::vector<std::uint32_t> values = windowsIn(reply.get());
    const std::uint32_t active = values.empty() ? 0 : values.front();
    hasChanged_ = hasChanged_ || active != active_;
    active_ = active;
    return true;
}

// The window manager may have been replaced since the last time.
bool X11WindowList::takeManager() {
    if (managerRequest_ != 0) {
        X11Reply<xcb_get_selection_owner_reply_t> reply;
        if (!connection_->poll(managerRequest_, reply)) {
            return false;
        }
        managerRequest_ = 0;
        const xcb_window_t owner = reply ? reply->owner : xcb_window_t{XCB_NONE};
        manager_ = 0;
        managerProcessRequest_ = owner == XCB_NONE ? 0 : connection_->askForProcess(owner);
        return true;
    }
    X11Reply<void> reply;
    if (managerProcessRequest_ == 0 || !connection_->poll(managerProcessRequest_, reply)) {
        return false;
    }
    managerProcessRequest_ = 0;
    manager_ = X11Connection::processOf(reply.get());
    return true;
}

bool X11WindowList::takeWindow() {
    if (readers_.empty() || !readers_.front().poll(*connection_)) {
        return false;
    }
    const X11WindowReader& reader = readers_.front();
    // It may have left the list meanwhile.
    if (const auto known = known_.find(reader.id()); known != known_.end()) {
        known->second = {reader.window(), true};
        hasChanged_ = true;
    }
    readers_.pop_front();
    return true;
}

void X11WindowList::setList(std::vector<std::uint32_t> listed) {
    std::unordered_set<std::uint32_t> all;
    std::erase_if(listed, [&all](std::uint32_t id) { return id == 0 || !all.insert(id).second; });
    hasChanged_ = hasChanged_ || listed != listed_;
    listed_ = std::move(listed);
    std::erase_if(known_, [&all](const auto& known) { return all.count(known.first) == 0; });
    const std::size_t before = readers_.size();
    for (const std::uint32_t id : listed_) {
        if (known_.count(id) == 0) {
            read(id);
        }
    }
    if (readers_.size() > before && managerRequest_ == 0 && connection_->knowsProcesses()) {
        managerRequest_ =
            ::xcb_get_selection_owner(connection_->xcb(), connection_->atom(X11Atom::WindowManager))
                .sequence;
    }
}

void X11WindowList::read(std::uint32_t window) {
    known_.emplace(window, Known{});
    readers_.emplace_back(*connection_, window);
}

bool X11WindowList::isSettled() const {
    return readers_.empty() && listRequest_ == 0 && activeRequest_ == 0 && managerRequest_ == 0 &&
           managerProcessRequest_ == 0;
}

void X11WindowList::lose() {
    notifier_->setEnabled(false);
    notifier_.release()->deleteLater(); // it may be the one that emits right now
    connection_.reset();
    listed_.clear();
    known_.clear();
    readers_.clear();
    active_ = 0;
    manager_ = 0;
    listRequest_ = activeRequest_ = managerRequest_ = managerProcessRequest_ = 0;
    isListStale_ = isActiveStale_ = hasChanged_ = false;
    Q_EMIT changed();
    open();
}

} // namespace quorvane
