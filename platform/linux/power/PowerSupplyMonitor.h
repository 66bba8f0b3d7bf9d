#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;
struct udev;
struct udev_monitor;

namespace quorvane {

/// Tells when the kernel announces a change of a power supply. Main thread only.
class PowerSupplyMonitor final : public QObject {
    Q_OBJECT

  public:
    PowerSupplyMonitor();
    ~PowerSupplyMonitor() override;
    PowerSupplyMonitor(const PowerSupplyMonitor&) = delete;
    PowerSupplyMonitor& operator=(const PowerSupplyMonitor&) = delete;

    /// Whether announcements can be had here at all.
    [[nodiscard]] bool isListening() const { return notifier_ != nullptr; }

  Q_SIGNALS:
    /// Some supply came, went or has new figures. Once for all that were announced at a time.
    void suppliesChanged();

  private:
    void receive();

    struct Release {
        void operator()(udev* context) const;
        void operator()(udev_monitor* monitor) const;
    };

    std::unique_ptr<udev, Release> context_;
    std::unique_ptr<udev_monitor, Release> monitor_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace quorvane
