#pragma once

#include <QByteArray>

#include <csignal>
#include <termios.h>

namespace quorvane {

/// Has the terminal for itself for as long as it lives: the alternate screen, no cursor, keys
/// unechoed, and the signals that would end or stop the process as values to be asked for. Whatever
/// way it ends, the terminal is as it was. One at a time; main thread only, and before any other
/// thread is started, because threads inherit which signals are left to this class.
class Terminal {
  public:
    enum class Happening {
        Nothing,   ///< the time is over
        Resized,   ///< or back from the background: what is shown is to be painted anew
        Left,      ///< the user has had enough
        Terminated ///< by a signal, see `signal`
    };

    Terminal();
    ~Terminal();

    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void write(const QByteArray& bytes) const;

    /// Waits until something happens, at most this long.
    [[nodiscard]] Happening wait(int milliseconds);

    /// The one that was to end the process.
    [[nodiscard]] int signal() const { return signal_; }

  private:
    void takeOver();
    void giveBack() const;
    [[nodiscard]] Happening readSignal();
    [[nodiscard]] Happening readKey();
    void stop();

    sigset_t oldMask_{};
    int signals_ = -1; // readable when one of ours is pending
    termios oldModes_{};
    bool hasKeyboard_ = false;
    bool hearsKeys_ = false;
    int signal_ = 0;
};

} // namespace quorvane
