#pragma once

#include "platform/Workspace.h"

#include <QStringList>

namespace quorvane::test {

/// From now on each activation of an application is a "+identifier" in the list, each deactivation
/// a "-identifier". The list has to outlive the workspace.
inline void recordActivations(const Workspace& workspace, QStringList& events) {
    QObject::connect(&workspace, &Workspace::didActivateApplication, &workspace,
                     [&events](const RunningApplication& application) {
                         events.append(QLatin1Char('+') + application.bundleIdentifier);
                     });
    QObject::connect(&workspace, &Workspace::didDeactivateApplication, &workspace,
                     [&events](const RunningApplication& application) {
                         events.append(QLatin1Char('-') + application.bundleIdentifier);
                     });
}

} // namespace quorvane::test
