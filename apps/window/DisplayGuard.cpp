#include "apps/window/DisplayGuard.h"

#include <QDir>
#include <QLibraryInfo>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace quorvane {

namespace {

bool hasWaylandPlugin() {
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                       QStringLiteral("/platforms"));
    return !plugins.entryList({QStringLiteral("libqwayland*")}).isEmpty();
}

/// What was tried, by the names that the user knows.
QByteArray reason() {
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    const QByteArray x = qgetenv("DISPLAY");
    const QByteArray wayland = qgetenv("WAYLAND_DISPLAY");
    if (x.isEmpty() && wayland.isEmpty()) {
        return "neither DISPLAY nor WAYLAND_DISPLAY is set";
    }
    if (x.isEmpty() && !hasWaylandPlugin()) {
        return "WAYLAND_DISPLAY alone needs the package qt6-wayland";
    }
    return "nothing answers at DISPLAY=\"" + x + "\", WAYLAND_DISPLAY=\"" + wayland +
           "\", QT_QPA_PLATFORM=\"" + platform + '"';
}

/// Which plugins Qt tries in vain is of no use to a user; only that all of them failed is told.
void handle(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "quorvane-window: no display: %s.\n", reason().constData());
        std::fflush(stderr);
        std::_Exit(DisplayGuard::noDisplay);
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
