#pragma once

#include "platform/linux/applications/SessionWindow.h"
#include "platform/linux/applications/X11Connection.h"

#include <QByteArray>

#include <array>
#include <cstdint>

namespace quorvane {

/// Reads one window. All requests are sent at once, so that thousands of windows can be read within
/// a few round trips; their answers are taken as they come, nothing waits. A window that goes
/// meanwhile is one without a process.
class X11WindowReader {
  public:
    /// Sends the requests. What is asked for is bounded, whatever a client stores; titles are not
    /// asked for.
    X11WindowReader(const X11Connection& connection, xcb_window_t window);

    /// Takes what has come. Returns whether that was the last.
    [[nodiscard]] bool poll(const X11Connection& connection);

    [[nodiscard]] xcb_window_t id() const { return id_; }

    /// Complete once `poll` has returned true.
    [[nodiscard]] const SessionWindow& window() const { return window_; }

    /// The parts of a WM_CLASS, also of one whose zero bytes are missing.
    static void readClass(const QByteArray& bytes, WindowNames& names);

  private:
    enum Property : std::size_t {
        Machine,
        ClaimedProcess,
        Class,
        GtkApplication,
        Type,
        State,
        ServersWord, ///< no property: which process the server says it is
        Count
    };

    void take(const X11Connection& connection, const xcb_get_property_reply_t* reply);
    void takeType(const X11Connection& connection, const xcb_get_property_reply_t* reply);
    void takeState(const X11Connection& connection, const xcb_get_property_reply_t* reply);
    void decideProcess();

    xcb_window_t id_;
    std::array<unsigned, Count> sequences_{}; ///< 0: was not asked for
    std::size_t next_ = 0;
    SessionWindow window_;
    bool hasMachine_ = false;
    bool isThisMachine_ = false;
    std::int32_t claimedProcess_ = 0;
    std::int32_t serversWord_ = 0;
};

} // namespace quorvane
