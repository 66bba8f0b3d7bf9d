#pragma once

#include <QString>

namespace quorvane {

/// What this machine is. Read once.
struct DeviceInformation {
    struct Version {
        int major = 0;
        int minor = 0;
        int patch = 0;
    };

    QString rawSystemInfoString; ///< the model; empty when it is not known
    Version osVersion;
    double physicalMemory = 0; ///< GB
    double cpuFrequency = 0;   ///< GHz
    int cpuCores = 0;
};

} // namespace quorvane
