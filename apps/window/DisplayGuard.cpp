#include "apps/window/DisplayGuard.h"

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace quorvane {

namespace {

/// What would have been tried, by the names that the user knows.
QByteArray triedDisplays() {
    const QByteArray x = qgetenv("DISPLAY");
    const QByteArray wayland = qgetenv("WAYLAND_DISPLAY");
    if (x.isEmpty() && wayland.isEmpty()) {
        return "neither DISPLAY nor WAYLAND_DISPLAY is set";
    }
    QByteArray tried;
    if (!x.isEmpty()) {
        tried += "DISPLAY=" + x;
    }
    if (!wayland.isEmpty()) {
        tried += (tried.isEmpty() ? "" : ", ") + QByteArrayLiteral("WAYLAND_DISPLAY=") + wayland;
    }
    return "nothing answers at " + tried;
}

void handle(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "quorvane-window: no display: %s.\n", triedDisplays().constData());
        std::fflush(stderr);
        std::_Exit(DisplayGuard::noDisplay);
    }
    // Which plugins Qt has tried in vain says nothing to a user; the rest is passed on.
    if (!text.startsWith(QLatin1String("could not connect to display")) &&
        !text.startsWith(QLatin1String("Could not load the Qt platform plugin")) &&
        !text.startsWith(QLatin1String("Failed to create wl_display"))) {
        std::fprintf(stderr, "quorvane-window: %s\n", qPrintable(text));
    }
}

} // namespace

DisplayGuard::DisplayGuard() {
    // Where there are both, Xwayland also does what Wayland has no words for: a window that stays
    // in front, on every desktop, and a clipboard without a window.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qgetenv("DISPLAY").isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "xcb;wayland");
    }
    qInstallMessageHandler(handle);
}

DisplayGuard::~DisplayGuard() {
    qInstallMessageHandler(nullptr);
}

} // namespace quorvane
