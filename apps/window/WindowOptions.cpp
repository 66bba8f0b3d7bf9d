#include "apps/window/WindowOptions.h"

namespace quorvane {

namespace {

using Message = WindowOptions::Message;
using Parsed = std::variant<WindowOptions, Message>;

constexpr const char* help =
    "usage: quorvane-window window LAYOUT-FILE [--all-desktops] [--level N] [--center]\n"
    "       quorvane-window alert\n"
    "       quorvane-window copy\n"
    "\n"
    "Shows one window for Quorvane, and ends with it.\n"
    "\n"
    "  window  shows the window of a Qt Designer layout, in front and with the keyboard\n"
    "    --all-desktops  on every desktop\n"
    "    --level N       above 0: in front of ordinary windows, also of those in use\n"
    "    --center        in the middle of the screen\n"
    "  alert   reads a JSON object from standard input, for example\n"
    "            {\"messageText\": \"...\", \"informativeText\": \"...\",\n"
    "             \"buttons\": [\"OK\", \"Cancel\"], \"safeButton\": 1}\n"
    "          shows it and prints the index of the button that the user pressed; closing the\n"
    "          window counts as the safe button\n"
    "  copy    reads a text from standard input and keeps it on the clipboard until another\n"
    "          program uses that\n"
    "\n"
    "  --help, --version\n"
    "\n"
    "Ends with 0; with 2 when the layout, the JSON object or the command is faulty; with 3 when\n"
    "there is no display.\n";

Message mistake(const QString& why) {
    return {QStringLiteral("quorvane-window: %1; see quorvane-window --help.\n").arg(why), true};
}

Parsed parseWindow(const QStringList& arguments) {
    WindowOptions options;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--all-desktops")) {
            options.allDesktops = true;
        } else if (argument == QLatin1String("--center")) {
            options.center = true;
        } else if (argument == QLatin1String("--level")) {
            bool isNumber = false;
            options.level = arguments.value(++i).toInt(&isNumber);
            if (!isNumber) {
                return mistake(QStringLiteral("--level needs a whole number"));
            }
        } else if (argument.startsWith(u'-') || !options.layoutFile.isEmpty()) {
            return mistake(QStringLiteral("unexpected argument \"%1\"").arg(argument));
        } else {
            options.layoutFile = argument;
        }
    }
    return options.layoutFile.isEmpty() ? Parsed(mistake(QStringLiteral("no layout file is named")))
                                        : Parsed(options);
}

} // namespace

Parsed WindowOptions::parse(const QStringList& arguments, const QString& version) {
    const QString command = arguments.value(1);
    const QStringList rest = arguments.mid(2);
    if (arguments.contains(QLatin1String("--help")) || command == QLatin1String("-h")) {
        return Message{QString::fromLatin1(help)};
    }
    if (command == QLatin1String("--version") || command == QLatin1String("-v")) {
        return Message{QStringLiteral("quorvane-window %1\n").arg(version)};
    }
    if (command == QLatin1String("window")) {
        return parseWindow(rest);
    }
    WindowOptions options;
    if (command == QLatin1String("alert")) {
        options.task = Task::alert;
    } else if (command == QLatin1String("copy")) {
        options.task = Task::copy;
    } else {
        return mistake(command.isEmpty() ? QStringLiteral("a command is missing")
                                         : QStringLiteral("unknown command \"%1\"").arg(command));
    }
    if (!rest.isEmpty()) {
        return mistake(QStringLiteral("unexpected argument \"%1\"").arg(rest.first()));
    }
    return options;
}

} // namespace quorvane
