#include "widgets/X11Window.h"

#include <QByteArray>
#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <span>
#include <xcb/xcb.h>

namespace quorvane {

namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

constexpr quint32 everyDesktop = 0xffffffff;

xcb_connection_t* connection() {
    const auto* application =
        qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return application != nullptr ? application->connection() : nullptr;
}

xcb_window_t root() {
    return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
}

xcb_atom_t atom(const QByteArray& name) {
    const auto cookie = xcb_intern_atom(connection(), 0, static_cast<quint16>(name.size()), name);
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection(), cookie, nullptr),
                                               &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

bool isComposited() {
    const auto cookie = xcb_get_selection_owner(connection(), atom("_NET_WM_CM_S0"));
    const Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection(), cookie, nullptr), &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool isSupportedByWindowManager(xcb_atom_t feature) {
    constexpr quint32 most = 4096; // atoms; window managers list about a hundred
    const auto cookie =
        xcb_get_property(connection(), 0, root(), atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, most);
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection(), cookie, nullptr), &std::free);
    if (!reply || reply->format != 32) {
        return false;
    }
    const std::span supported(static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get())),
                              static_cast<std::size_t>(xcb_get_property_value_length(reply.get())) /
                                  sizeof(xcb_atom_t));
    return std::find(supported.begin(), supported.end(), feature) != supported.end();
}

void setNumbers(xcb_window_t window, const QByteArray& property, xcb_atom_t type,
                std::span<const quint32> numbers) {
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        static_cast<quint32>(numbers.size()), numbers.data());
    xcb_flush(connection());
}

} // namespace

X11Window::X11Window(QWidget& window)
    : window_(connection() != nullptr ? static_cast<quint32>(window.winId()) : 0) {}

bool X11Window::offersBlur() {
    return connection() != nullptr && isComposited() &&
           isSupportedByWindowManager(atom("_KDE_NET_WM_BLUR_BEHIND_REGION"));
}

void X11Window::setBlurBehind() {
    if (window_ != 0) {
        // No rectangle at all stands for the whole window, whatever size it gets.
        setNumbers(window_, "_KDE_NET_WM_BLUR_BEHIND_REGION", XCB_ATOM_CARDINAL, {});
    }
}

void X11Window::setOnAllDesktops() {
    if (window_ != 0) {
        const quint32 desktop[] = {everyDesktop};
        setNumbers(window_, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, desktop);
        const quint32 state[] = {atom("_NET_WM_STATE_STICKY")};
        setNumbers(window_, "_NET_WM_STATE", XCB_ATOM_ATOM, state);
    }
}

void X11Window::activate() {
    if (window_ == 0) {
        return;
    }
    // As a pager asks: window managers keep the request of an ordinary program back while the user
    // is typing elsewhere.
    constexpr quint32 fromPager = 2;
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window_;
    event.type = atom("_NET_ACTIVE_WINDOW");
    event.data.data32[0] = fromPager;
    xcb_send_event(connection(), 0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(connection());
}

} // namespace quorvane
