#pragma once

#include "platform/Displays.h"

#include <vector>

namespace quorvane {

/// Screens in memory; starts with one at full brightness. A display's id is its place in the list.
class SimulatedDisplays final : public Displays {
  public:
    [[nodiscard]] List activeDisplays(std::size_t capacity) const override;
    [[nodiscard]] Reading brightness(DisplayId display) const override;
    int setBrightness(DisplayId display, float brightness) override;

    void changesEnded() override { journal_.clear(); }

    void setLevels(std::vector<float> levels) { levels_ = std::move(levels); }

    [[nodiscard]] const std::vector<float>& levels() const { return levels_; }

    /// As if the user had pressed the brightness keys.
    void userSets(DisplayId display, float brightness) { levels_.at(display) = brightness; }

    void failListing(int status) { listStatus_ = status; }

    void failReading(int status) { readStatus_ = status; }

    void failWriting(int status) { writeStatus_ = status; }

    /// What a crash would have to put back.
    [[nodiscard]] std::size_t journalSize() const { return journal_.size(); }

    [[nodiscard]] int writes() const { return writes_; }

  private:
    std::vector<float> levels_{1.0F};
    std::vector<DisplayId> journal_;
    int listStatus_ = 0;
    int readStatus_ = 0;
    int writeStatus_ = 0;
    int writes_ = 0;
};

} // namespace quorvane
