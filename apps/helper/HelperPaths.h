#pragma once

#include "platform/linux/common/HelperNames.h"

#include <QString>

namespace quorvane {

/// Every place that the helper reads or writes. There are no others, and no caller names one.
struct HelperPaths {
    /// The kernel's devices: power switches are read and written.
    QString sysfs = QStringLiteral("/sys");

    /// The kernel's processes: read for the report of tasks.
    QString processes = QStringLiteral("/proc");

    /// The helper's own folder, of root's and gone at the next start of the machine: the journal of
    /// what has to be put back, and the list of what is loaded.
    QString runtimeFolder = QStringLiteral("/run/") + helpernames::label;

    /// Written by the user of the active session; one byte is read.
    QString runTimeConfiguration = helpernames::runTimeConfiguration;

    /// Where the two extensions lie: the folder of the executable.
    QString extensions;

    [[nodiscard]] QString journal() const {
        return runtimeFolder + QStringLiteral("/putting-back.journal");
    }

    [[nodiscard]] QString loadedList() const { return runtimeFolder + QStringLiteral("/loaded"); }
};

} // namespace quorvane
