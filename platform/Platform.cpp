#include "platform/Platform.h"

#include "platform/Log.h"

#include <QtGlobal>

#include <utility>

namespace quorvane {

namespace {

std::unique_ptr<Platform>& installed() {
    static std::unique_ptr<Platform> current;
    return current;
}

} // namespace

Platform& platform() {
    if (!installed()) {
        qFatal("no platform is installed");
    }
    return *installed();
}

void installPlatform(std::unique_ptr<Platform> newPlatform) {
    installed() = std::move(newPlatform);
}

void log(const QString& line) {
    platform().logSink().write(line);
}

} // namespace quorvane
