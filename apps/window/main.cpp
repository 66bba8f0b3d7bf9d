#include "apps/window/AlertDialog.h"
#include "apps/window/AlertRequest.h"
#include "apps/window/ClipboardOwner.h"
#include "apps/window/DisplayGuard.h"
#include "apps/window/WindowOptions.h"
#include "core/Translation.h"
#include "widgets/LayoutWindowController.h"
#include "widgets/ProductIcon.h"
#include "widgets/X11Window.h"

#include <QApplication>
#include <QFile>
#include <QScreen>

#include <cstdio>
#include <memory>

namespace {

using namespace quorvane;

constexpr int faulty = 2;

int fail(const QString& why) {
    std::fprintf(stderr, "quorvane-window: %s\n", qPrintable(why));
    return faulty;
}

QByteArray standardInput() {
    QFile input;
    return input.open(stdin, QIODevice::ReadOnly) ? input.readAll() : QByteArray();
}

void bringToFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
    X11Window(window).activate();
}

int showWindow(const WindowOptions& options) {
    LayoutWindowController controller(options.layoutFile);
    QWidget* window = controller.window();
    if (window == nullptr) {
        return fail(controller.error());
    }
    window->setWindowFlag(Qt::WindowStaysOnTopHint, options.level > 0);
    if (options.allDesktops) {
        X11Window(*window).setOnAllDesktops();
    }
    if (options.center) {
        // The content's place, not the frame's, whose width only the window manager knows.
        QRect place = window->rect();
        place.moveCenter(window->screen()->availableGeometry().center());
        window->setGeometry(place);
    }
    bringToFront(*window);
    return QApplication::exec();
}

int showAlert() {
    const AlertRequest request = AlertRequest::parse(standardInput());
    if (!request.alert) {
        return fail(QStringLiteral("the alert on standard input: ") + request.error);
    }
    AlertDialog dialog(*request.alert);
    bringToFront(dialog);
    std::printf("%d\n", dialog.exec());
    return 0;
}

int copy() {
    const ClipboardOwner owner(QString::fromUtf8(standardInput()));
    QObject::connect(&owner, &ClipboardOwner::taken, qApp, &QCoreApplication::quit);
    return QApplication::exec();
}

int run(const WindowOptions& options) {
    switch (options.task) {
    case WindowOptions::Task::window:
        return showWindow(options);
    case WindowOptions::Task::alert:
        return showAlert();
    case WindowOptions::Task::copy:
        return copy();
    }
    return faulty;
}

QStringList texts(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments += QString::fromLocal8Bit(argv[i]);
    }
    return arguments;
}

} // namespace

int main(int argc, char** argv) {
    // Before there is an application, so that the help needs no display.
    const auto parsed = WindowOptions::parse(texts(argc, argv), QStringLiteral(QUORVANE_VERSION));
    if (const auto* message = std::get_if<WindowOptions::Message>(&parsed)) {
        std::fputs(qPrintable(message->text), message->isError ? stderr : stdout);
        return message->isError ? faulty : 0;
    }

    auto guard = std::make_unique<DisplayGuard>();
    const QApplication application(argc, argv);
    guard.reset();
    QApplication::setApplicationName(QStringLiteral("quorvane-window"));
    QApplication::setApplicationDisplayName(QStringLiteral("Quorvane"));
    QApplication::setWindowIcon(ProductIcon::pixmap(64));

    const Translation translation(QApplication::applicationDirPath() +
                                  QStringLiteral("/../Resources/Translations"));
    return run(std::get<WindowOptions>(parsed));
}
