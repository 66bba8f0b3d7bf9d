#include "platform/linux/applications/LaunchCommand.h"

#include <QList>

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

// Arguments are parted by blanks; in double quotes a backslash stands for the character behind it.
// Only the first ones are of interest.
QList<QByteArray> argumentsOf(const QByteArray& line) {
    constexpr qsizetype most = 32;
    QList<QByteArray> arguments;
    QByteArray argument;
    bool isQuoted = false;
    bool isOpen = false;
    const auto close = [&] {
        if (isOpen) {
            arguments.append(argument);
        }
        argument.clear();
        isOpen = false;
    };
    for (qsizetype at = 0; at < line.size() && arguments.size() < most; ++at) {
        const char character = line.at(at);
        if (character == '"') {
            isQuoted = !isQuoted;
            isOpen = true;
        } else if (isQuoted && character == '\\' && at + 1 < line.size()) {
            argument.append(line.at(++at));
        } else if (!isQuoted && (character == ' ' || character == '\t')) {
            close();
        } else {
            argument.append(character);
            isOpen = true;
        }
    }
    close();
    return arguments;
}

bool isAssignment(const QByteArray& argument) {
    const qsizetype sign = argument.indexOf('=');
    return sign > 0 && std::all_of(argument.cbegin(), argument.cbegin() + sign, [](char character) {
               return character == '_' || (character >= '0' && character <= '9') ||
                      (character >= 'A' && character <= 'Z') ||
                      (character >= 'a' && character <= 'z');
           });
}

// Where the program of `env ...` begins.
qsizetype behindEnv(const QList<QByteArray>& arguments, qsizetype at) {
    while (at < arguments.size() &&
           (arguments.at(at).startsWith('-') || isAssignment(arguments.at(at)))) {
        // These two take the next argument; others bring their own.
        const bool takesNext = arguments.at(at) == "-u" || arguments.at(at) == "-C";
        at += takesNext ? 2 : 1;
    }
    return at;
}

QByteArray commandOfFlatpak(const QList<QByteArray>& arguments) {
    constexpr auto option = "--command=";
    for (const QByteArray& argument : arguments) {
        if (argument.startsWith(option)) {
            return fileNameOf(argument.mid(qsizetype(qstrlen(option))));
        }
    }
    return {};
}

} // namespace

QByteArray fileNameOf(const QByteArray& path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

bool isInterpreter(const QByteArray& program) {
    // With a version behind: python3.11, perl5.36.
    static constexpr std::array names{"python", "perl", "ruby",     "lua",  "node", "gjs",
                                      "java",   "mono", "electron", "wine", "php"};
    static constexpr std::array shells{"sh",      "bash", "dash",    "zsh",
                                       "busybox", "env",  "flatpak", "snap"};
    const bool isShell = std::any_of(shells.cbegin(), shells.cend(),
                                     [&program](const char* shell) { return program == shell; });
    return isShell || std::any_of(names.cbegin(), names.cend(), [&program](const char* name) {
               return program.startsWith(name) &&
                      std::all_of(program.cbegin() + qstrlen(name), program.cend(), [](char tail) {
                          return tail == '.' || (tail >= '0' && tail <= '9');
                      });
           });
}

QByteArray programOfLaunchCommand(const QByteArray& line) {
    const QList<QByteArray> arguments = argumentsOf(line);
    qsizetype at = behindEnv(arguments, 0); // some lines begin with an assignment, as in a shell
    while (at < arguments.size() && fileNameOf(arguments.at(at)) == "env") {
        at = behindEnv(arguments, at + 1);
    }
    const QByteArray program = fileNameOf(arguments.value(at));
    if (program == "flatpak") {
        return commandOfFlatpak(arguments);
    }
    return isInterpreter(program) ? QByteArray() : program;
}

} // namespace quorvane
