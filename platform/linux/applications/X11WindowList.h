#pragma once

#include "platform/linux/applications/WindowList.h"
#include "platform/linux/applications/X11Connection.h"
#include "platform/linux/applications/X11ServerWatch.h"
#include "platform/linux/applications/X11WindowReader.h"

#include <QSocketNotifier>

#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

namespace quorvane {

/// The windows that the window manager of an X server lists, and the active one. Woken by changes
/// of the root window's properties only, works only for those two, and never waits for the server
/// once it is connected. When the server goes there are no windows, until one is back on the same
/// display. Main thread only.
class X11WindowList final : public WindowList {
    Q_OBJECT

  public:
    X11WindowList();
    ~X11WindowList() override;
    X11WindowList(const X11WindowList&) = delete;
    X11WindowList& operator=(const X11WindowList&) = delete;

    void open() override;

    /// Those that the window manager lists, in its order, without those of the X server, of the
    /// window manager itself and of other machines.
    [[nodiscard]] std::vector<SessionWindow> windows() const override;

    /// Managers name one at times that is not complete yet, or that is gone and whose number has
    /// passed to another.
    [[nodiscard]] WindowId activeWindow() const override { return WindowId{active_}; }

    /// Iconifies it.
    void hide(WindowId window) override;

    void close(WindowId window) override;
    [[nodiscard]] Result<Done> tellsFront() const override;
    [[nodiscard]] Result<Done> canHide() const override;
    [[nodiscard]] QString leavesOut() const override;

    /// How many times the server has woken this program.
    [[nodiscard]] std::uint64_t wakeUps() const { return wakeUps_; }

  private:
    struct Known {
        SessionWindow window;
        bool isRead = false;
    };

    [[nodiscard]] bool connectNow();
    void wake();
    void work();
    using NextEvent = xcb_generic_event_t*(xcb_connection_t*);

    [[nodiscard]] bool takeEvents(NextEvent* next);
    [[nodiscard]] bool takeAnswers();
    [[nodiscard]] bool takeList();
    [[nodiscard]] bool takeActive();
    [[nodiscard]] bool takeManager();
    [[nodiscard]] bool takeWindow();
    [[nodiscard]] bool ask();
    [[nodiscard]] unsigned askRoot(X11Atom property, std::uint32_t length) const;
    void setList(std::vector<std::uint32_t> listed);
    void read(std::uint32_t window);
    [[nodiscard]] bool isSettled() const;
    void lose();
    void flush();

    std::unique_ptr<X11Connection> connection_;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::unique_ptr<X11ServerWatch> watch_; ///< while there is no server

    std::vector<std::uint32_t> listed_;
    std::unordered_map<std::uint32_t, Known> known_;
    std::deque<X11WindowReader> readers_; ///< in the order of their requests
    std::uint32_t active_ = 0;
    std::int32_t manager_ = 0; ///< the window manager's process; 0: unknown

    // Numbers of requests that have no answer yet; 0: none.
    unsigned listRequest_ = 0;
    unsigned activeRequest_ = 0;
    unsigned managerRequest_ = 0;
    unsigned managerProcessRequest_ = 0;

    bool isListStale_ = false;
    bool isActiveStale_ = false;
    bool hasChanged_ = false;
    bool isXwayland_ = false; ///< a compositor has windows that it does not show to the server
    std::uint64_t wakeUps_ = 0;
};

} // namespace quorvane
