#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvane {

using DisplayId = std::uint32_t;

/// The displays whose brightness can be set. Main thread only.
///
/// Every brightness that is set is first written to the putting-back journal with the one that was
/// found, and stays there until `changesEnded()`, so that a crash in between leaves no dark screen.
class Displays {
  public:
    virtual ~Displays() = default;

    struct List {
        int status = 0; ///< 0, or the platform's error; `displays` is empty then
        std::vector<DisplayId> displays;
    };

    struct Reading {
        int status = 0;          ///< 0, or the platform's error; `brightness` means nothing then
        float brightness = 0.0F; ///< 0.0 darkest to 1.0 brightest
    };

    /// The active displays, the built-in one first, at most `capacity` of them.
    [[nodiscard]] virtual List activeDisplays(std::size_t capacity) const = 0;

    /// The brightness of one display: the one last set, as long as setting it is under way.
    [[nodiscard]] virtual Reading brightness(DisplayId display) const = 0;

    /// Sets one display to `brightness`, 0.0 to 1.0. Returns 0 or the platform's error; an error
    /// that shows up later goes to the log.
    virtual int setBrightness(DisplayId display, float brightness) = 0;

    /// What was to be put back has been: forget what was found. A later `setBrightness` starts
    /// anew.
    virtual void changesEnded() = 0;
};

} // namespace quorvane
