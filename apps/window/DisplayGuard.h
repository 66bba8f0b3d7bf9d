#pragma once

namespace quorvane {

/// Qt ends a program that finds no display with an abort and a core file. While an object of this
/// class lives, the program ends with a plain line and a status of its own instead. Around the
/// making of the application object; one at a time.
class DisplayGuard {
  public:
    /// The status that the program ends with.
    static constexpr int noDisplay = 3;

    DisplayGuard();
    DisplayGuard(const DisplayGuard&) = delete;
    DisplayGuard& operator=(const DisplayGuard&) = delete;
    ~DisplayGuard();
};

} // namespace quorvane
