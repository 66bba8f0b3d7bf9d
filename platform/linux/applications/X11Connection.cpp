#include "platform/linux/applications/X11Connection.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <xcb/res.h>

namespace quorvane {

namespace {

constexpr std::array atomNames{"_NET_CLIENT_LIST",
                               "_NET_ACTIVE_WINDOW",
                               "_NET_CLOSE_WINDOW",
                               "WM_CHANGE_STATE",
                               "_NET_WM_PID",
                               "_GTK_APPLICATION_ID",
                               "_NET_WM_STATE",
                               "_NET_WM_STATE_SKIP_TASKBAR",
                               "_NET_WM_WINDOW_TYPE",
                               "_NET_WM_WINDOW_TYPE_NORMAL",
                               "_NET_WM_WINDOW_TYPE_DIALOG",
                               "_NET_WM_WINDOW_TYPE_UTILITY",
                               "_NET_WM_WINDOW_TYPE_DESKTOP",
                               "_NET_WM_WINDOW_TYPE_DOCK",
                               "_NET_WM_WINDOW_TYPE_TOOLBAR",
                               "_NET_WM_WINDOW_TYPE_MENU",
                               "_NET_WM_WINDOW_TYPE_SPLASH",
                               "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                               "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                               "_NET_WM_WINDOW_TYPE_TOOLTIP",
                               "_NET_WM_WINDOW_TYPE_NOTIFICATION",
                               "_NET_WM_WINDOW_TYPE_COMBO",
                               "_NET_WM_WINDOW_TYPE_DND",
                               "WM_S0"};
static_assert(atomNames.size() == static_cast<std::size_t>(X11Atom::Count));

// The library writes to a server that is gone like to any other; the program must outlive that.
void surviveBrokenPipes() {
    struct sigaction action {};

    if (::sigaction(SIGPIPE, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
        action.sa_handler = SIG_IGN;
        ::sigaction(SIGPIPE, &action, nullptr);
    }
}

xcb_screen_t* screenOf(const xcb_setup_t* setup, int number) {
    xcb_screen_iterator_t screens = ::xcb_setup_roots_iterator(setup);
    for (; number > 0 && screens.rem > 1; --number) {
        ::xcb_screen_next(&screens);
    }
    return screens.rem > 0 ? screens.data : nullptr;
}

std::int32_t peerOf(int socket) {
    ucred peer{};
    socklen_t length = sizeof peer;
    const bool isKnown = ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0;
    return isKnown ? static_cast<std::int32_t>(peer.pid) : 0;
}

} // namespace

X11Connection::X11Connection(xcb_connection_t* connection) : connection_(connection) {}

QString X11Connection::socketPath() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (::xcb_parse_display(nullptr, &host, &display, &screen) == 0) {
        return {};
    }
    const X11Reply<char> freed(host);
    // The processes behind another machine's display are not this machine's.
    const bool isLocal = *host == '\0' || std::strcmp(host, "unix") == 0;
    return isLocal ? QStringLiteral("/tmp/.X11-unix/X%1").arg(display) : QString();
}

std::unique_ptr<X11Connection> X11Connection::open() {
    if (socketPath().isEmpty()) {
        return nullptr;
    }
    surviveBrokenPipes();
    int screen = 0;
    std::unique_ptr<X11Connection> result(new X11Connection(::xcb_connect(nullptr, &screen)));
    return !result->isBroken() && result->setUp(screen) ? std::move(result) : nullptr;
}

bool X11Connection::setUp(int screen) {
    const xcb_screen_t* const first = screenOf(::xcb_get_setup(xcb()), screen);
    if (first == nullptr) {
        return false;
    }
    root_ = first->root;
    serverProcess_ = peerOf(::xcb_get_file_descriptor(xcb()));
    ::xcb_prefetch_extension_data(xcb(), &xcb_res_id);
    const bool hasAtoms = internAtoms();
    lookForProcesses();
    return hasAtoms && !isBroken();
}

bool X11Connection::internAtoms() {
    std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies{};
    std::transform(atomNames.cbegin(), atomNames.cend(), cookies.begin(), [this](const char* name) {
        return ::xcb_intern_atom(xcb(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    });
    std::transform(cookies.cbegin(), cookies.cend(), atoms_.begin(), [this](auto cookie) {
        const X11Reply<xcb_intern_atom_reply_t> reply(
            ::xcb_intern_atom_reply(xcb(), cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_NONE};
    });
    return std::find(atoms_.cbegin(), atoms_.cend(), xcb_atom_t{XCB_NONE}) == atoms_.cend();
}

// Version 1.2 of the extension brought the question. To ask a server without the extension would
// break the connection.
void X11Connection::lookForProcesses() {
    const xcb_query_extension_reply_t* const extension =
        ::xcb_get_extension_data(xcb(), &xcb_res_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    const X11Reply<xcb_res_query_version_reply_t> version(::xcb_res_query_version_reply(
        xcb(), ::xcb_res_query_version(xcb(), XCB_RES_MAJOR_VERSION, XCB_RES_MINOR_VERSION),
        nullptr));
    knowsProcesses_ = version && (version->server_major > 1 ||
                                  (version->server_major == 1 && version->server_minor >= 2));
}

X11Atom X11Connection::known(xcb_atom_t atom) const {
    return static_cast<X11Atom>(std::find(atoms_.cbegin(), atoms_.cend(), atom) - atoms_.cbegin());
}

unsigned X11Connection::askForProcess(xcb_window_t window) const {
    const xcb_res_client_id_spec_t question{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return ::xcb_res_query_client_ids(xcb(), 1, &question).sequence;
}

std::int32_t X11Connection::processOf(const void* reply) {
    if (reply == nullptr) {
        return 0;
    }
    auto ids = ::xcb_res_query_client_ids_ids_iterator(
        static_cast<const xcb_res_query_client_ids_reply_t*>(reply));
    for (; ids.rem > 0; ::xcb_res_client_id_value_next(&ids)) {
        const bool isProcess = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
        if (isProcess && ::xcb_res_client_id_value_value_length(ids.data) > 0) {
            return static_cast<std::int32_t>(*::xcb_res_client_id_value_value(ids.data));
        }
    }
    return 0;
}

void X11Connection::askManager(xcb_window_t window, X11Atom what,
                               std::array<std::uint32_t, 5> data) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(what);
    std::copy(data.cbegin(), data.cend(), std::begin(message.data.data32));
    ::xcb_send_event(xcb(), 0, root_,
                     XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                     reinterpret_cast<const char*>(&message));
}

} // namespace quorvane
