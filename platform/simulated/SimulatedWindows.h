#pragma once

#include "platform/Windows.h"

#include <QSet>

#include <vector>

namespace quorvane {

/// The laptop's screen, as far as windows and alerts are concerned.
class SimulatedWindows final : public Windows {
  public:
    /// One window as the user sees it.
    struct Look {
        QString layout;
        unsigned collectionBehavior = 0;
        int level = 0;
        bool isVisible = false;
        bool isCentered = false;
    };

    [[nodiscard]] std::unique_ptr<Window> loadNibNamed(const QString& name) override;
    void activateIgnoringOtherApps() override;
    void runModal(const Alert& alert, std::function<void(int button)> answered) override;

    /// Layouts that the bundle has; "Splash" at first.
    QSet<QString> layouts{QStringLiteral("Splash")};

    /// In the order of loading.
    [[nodiscard]] const std::vector<Look>& windows() const { return looks_; }

    /// Everything that was done, in order, for example "front Splash".
    [[nodiscard]] const QStringList& calls() const { return calls_; }

    /// The user closes a window that is on the screen.
    void close(const QString& layout);

    [[nodiscard]] const std::vector<Alert>& alerts() const { return alerts_; }

    /// The user presses a button of the oldest alert that waits. Returns whether there was one.
    bool press(int button);

  private:
    class SimulatedWindow;

    std::vector<Look> looks_;
    std::vector<SimulatedWindow*> open_; // as many as looks_; null when it is gone
    QStringList calls_;
    std::vector<Alert> alerts_;
    std::vector<std::function<void(int)>> waiting_;
};

} // namespace quorvane
