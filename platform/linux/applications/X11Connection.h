#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace quorvane {

/// What is looked at on the X server. The order is that of the names in X11Connection.cpp.
enum class X11Atom : std::size_t {
    ClientList,
    ActiveWindow,
    CloseWindow,
    ChangeState,
    ProcessIdentifier,
    GtkApplicationId,
    WindowState,
    StateSkipTaskbar,
    WindowType,
    TypeNormal,
    TypeDialog,
    TypeUtility,
    TypeDesktop,
    TypeDock,
    TypeToolbar,
    TypeMenu,
    TypeSplash,
    TypeDropdownMenu,
    TypePopupMenu,
    TypeTooltip,
    TypeNotification,
    TypeCombo,
    TypeDragAndDrop,
    WindowManager, ///< the selection that the window manager owns
    Count
};

/// What the X library hands out is the caller's to free.
struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

template <class Reply>
using X11Reply = std::unique_ptr<Reply, FreeReply>;

/// A connection to the session's X server, with what every request needs. Nothing here ends the
/// program when the server goes.
class X11Connection {
  public:
    /// Connects to $DISPLAY, which may take a few round trips. Null when there is no server of this
    /// machine.
    [[nodiscard]] static std::unique_ptr<X11Connection> open();

    /// The socket of $DISPLAY on this machine, or nothing when it names none.
    [[nodiscard]] static QString socketPath();

    [[nodiscard]] xcb_connection_t* xcb() const { return connection_.get(); }

    [[nodiscard]] xcb_window_t root() const { return root_; }

    [[nodiscard]] xcb_atom_t atom(X11Atom which) const {
        return atoms_.at(static_cast<std::size_t>(which));
    }

    /// The atom's place among those above, or Count.
    [[nodiscard]] X11Atom known(xcb_atom_t atom) const;

    /// Whether the server tells which process a window belongs to.
    [[nodiscard]] bool knowsProcesses() const { return knowsProcesses_; }

    /// The process that the server's socket belongs to: the server, or on Wayland the compositor.
    [[nodiscard]] std::int32_t serverProcess() const { return serverProcess_; }

    [[nodiscard]] bool isBroken() const { return ::xcb_connection_has_error(xcb()) != 0; }

    /// Whether an answer has come, also an error: then `reply` is null. Never waits.
    template <class Reply>
    [[nodiscard]] bool poll(unsigned sequence, X11Reply<Reply>& reply) const {
        void* answer = nullptr;
        xcb_generic_error_t* error = nullptr;
        const bool hasCome = ::xcb_poll_for_reply(xcb(), sequence, &answer, &error) != 0;
        const X11Reply<xcb_generic_error_t> ignored(error);
        reply.reset(static_cast<Reply*>(answer));
        return hasCome;
    }

    /// Asks for the process of a window; its answer is read with `processOf`.
    [[nodiscard]] unsigned askForProcess(xcb_window_t window) const;
    [[nodiscard]] static std::int32_t processOf(const void* reply);

    /// Asks the window manager for something, as a panel does.
    void askManager(xcb_window_t window, X11Atom what, std::array<std::uint32_t, 5> data) const;

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { ::xcb_disconnect(connection); }
    };

    explicit X11Connection(xcb_connection_t* connection);
    [[nodiscard]] bool setUp(int screen);
    [[nodiscard]] bool internAtoms();
    void lookForProcesses();

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_NONE;
    std::array<xcb_atom_t, static_cast<std::size_t>(X11Atom::Count)> atoms_{};
    bool knowsProcesses_ = false;
    std::int32_t serverProcess_ = 0;
};

} // namespace quorvane
