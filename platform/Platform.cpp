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

std::unique_ptr<Platform> installPlatform(std::unique_ptr<Platform> newPlatform) {
    return std::exchange(installed(), std::move(newPlatform));
}

void log(const QString& line) {
    platform().logSink().write(line);
}

} // namespace quorvane
