#include "platform/simulated/SimulatedWindows.h"

#include <utility>

namespace quorvane {

class SimulatedWindows::SimulatedWindow final : public Window {
  public:
    SimulatedWindow(SimulatedWindows& windows, std::size_t index)
        : windows_(windows), index_(index) {}

    SimulatedWindow(const SimulatedWindow&) = delete;
    SimulatedWindow& operator=(const SimulatedWindow&) = delete;

    ~SimulatedWindow() override { windows_.open_[index_] = nullptr; }

    void setCollectionBehavior(unsigned behavior) override {
        note("behavior");
        look().collectionBehavior = behavior;
    }

    void makeKeyAndOrderFront() override {
        note("front");
        look().isVisible = true;
    }

    void center() override {
        note("center");
        look().isCentered = true;
    }

    void setLevel(int level) override {
        note("level");
        look().level = level;
    }

  private:
    [[nodiscard]] Look& look() const { return windows_.looks_[index_]; }

    void note(const char* call) {
        windows_.calls_.append(QLatin1String(call) + QLatin1Char(' ') + look().layout);
    }

    SimulatedWindows& windows_;
    std::size_t index_;
};

std::unique_ptr<Window> SimulatedWindows::loadNibNamed(const QString& name) {
    calls_.append(QStringLiteral("load ") + name);
    if (!layouts.contains(name)) {
        return nullptr;
    }
    looks_.push_back({name});
    open_.push_back(nullptr);
    auto window = std::make_unique<SimulatedWindow>(*this, looks_.size() - 1);
    open_.back() = window.get();
    return window;
}

void SimulatedWindows::activateIgnoringOtherApps() {
    calls_.append(QStringLiteral("activate"));
}

void SimulatedWindows::runModal(const Alert& alert, std::function<void(int button)> answered) {
    alerts_.push_back(alert);
    waiting_.push_back(std::move(answered));
}

void SimulatedWindows::close(const QString& layout) {
    for (std::size_t i = 0; i < looks_.size(); ++i) {
        if (looks_[i].layout == layout && looks_[i].isVisible) {
            looks_[i].isVisible = false;
            if (open_[i] != nullptr) {
                Q_EMIT open_[i]->willClose();
            }
        }
    }
}

bool SimulatedWindows::press(int button) {
    if (waiting_.empty()) {
        return false;
    }
    const std::function<void(int)> answered = std::move(waiting_.front());
    waiting_.erase(waiting_.begin());
    answered(button);
    return true;
}

} // namespace quorvane
