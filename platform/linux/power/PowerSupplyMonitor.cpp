#include "platform/linux/power/PowerSupplyMonitor.h"

#include <QSocketNotifier>

#include <libudev.h>

namespace quorvane {

void PowerSupplyMonitor::Release::operator()(udev* context) const {
    udev_unref(context);
}

void PowerSupplyMonitor::Release::operator()(udev_monitor* monitor) const {
    udev_monitor_unref(monitor);
}

PowerSupplyMonitor::PowerSupplyMonitor() : context_(udev_new()) {
    if (!context_) {
        return;
    }
    monitor_.reset(udev_monitor_new_from_netlink(context_.get(), "udev"));
    if (!monitor_ ||
        udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "power_supply", nullptr) <
            0 ||
        udev_monitor_enable_receiving(monitor_.get()) < 0) {
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(monitor_.get()),
                                                  QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { receive(); });
}

PowerSupplyMonitor::~PowerSupplyMonitor() = default;

void PowerSupplyMonitor::receive() {
    bool any = false;
    while (udev_device* device = udev_monitor_receive_device(monitor_.get())) {
        udev_device_unref(device);
        any = true;
    }
    if (any) {
        Q_EMIT suppliesChanged();
    }
}

} // namespace quorvane
