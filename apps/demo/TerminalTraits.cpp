#include "apps/demo/TerminalTraits.h"

#include <QtGlobal>

#include <clocale>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace quorvane {

namespace {

ColorDepth depthFrom(const TerminalTraits::Clues& clues) {
    // https://no-color.org: any value but an empty one.
    if (!clues.noColor.isEmpty()) {
        return ColorDepth::None;
    }
    if (clues.colorTerm == "truecolor" || clues.colorTerm == "24bit" ||
        clues.term.endsWith("-direct")) {
        return ColorDepth::Full;
    }
    if (clues.term.contains("256color") || !clues.colorTerm.isEmpty()) {
        return ColorDepth::Palette;
    }
    return clues.term.startsWith("vt") ? ColorDepth::None : ColorDepth::Basic;
}

} // namespace

TerminalTraits TerminalTraits::from(const Clues& clues) {
    TerminalTraits traits;
    const QByteArray codeset = clues.codeset.toUpper();
    traits.charset = codeset == "UTF-8" || codeset == "UTF8" ? Charset::Utf8 : Charset::Ascii;
    traits.depth = depthFrom(clues);
    traits.canMove = clues.outputIsTerminal && !clues.term.isEmpty() && clues.term != "dumb" &&
                     clues.size.width() >= smallest.width() &&
                     clues.size.height() >= smallest.height();
    return traits;
}

TerminalTraits TerminalTraits::ofStandardOutput() {
    std::setlocale(LC_CTYPE, "");
    return from({isatty(STDOUT_FILENO) == 1, terminalSize(STDOUT_FILENO), nl_langinfo(CODESET),
                 qgetenv("TERM"), qgetenv("COLORTERM"), qgetenv("NO_COLOR")});
}

QSize terminalSize(int fileDescriptor) {
    winsize size{};
    if (ioctl(fileDescriptor, TIOCGWINSZ, &size) != 0) {
        return {};
    }
    return {size.ws_col, size.ws_row};
}

} // namespace quorvane
