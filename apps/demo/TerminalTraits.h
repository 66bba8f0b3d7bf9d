#pragma once

#include "apps/demo/Charset.h"

#include <QByteArray>
#include <QSize>

namespace quorvane {

enum class ColorDepth {
    None,
    Basic,   ///< sixteen colors, which look different everywhere
    Palette, ///< 256 colors
    Full
};

/// What the terminal at the other end can do.
struct TerminalTraits {
    Charset charset = Charset::Ascii;
    ColorDepth depth = ColorDepth::None;
    bool canMove = false; ///< whether a picture can be redrawn in place

    /// What is known of the terminal, as found in the process's environment.
    struct Clues {
        bool outputIsTerminal = false;
        QSize size;         ///< in characters
        QByteArray codeset; ///< of the locale, "UTF-8"
        QByteArray term;    ///< the variables of these names
        QByteArray colorTerm;
        QByteArray noColor;
    };

    [[nodiscard]] static TerminalTraits from(const Clues& clues);

    /// Of the process's standard output. Chooses the process's locale by the environment; to be
    /// asked before there is an application object, which may choose another one.
    [[nodiscard]] static TerminalTraits ofStandardOutput();

    /// The smallest terminal that the moving picture fits into.
    static constexpr QSize smallest{60, 20};
};

/// The size of the terminal that the file descriptor leads to; empty when it is none.
[[nodiscard]] QSize terminalSize(int fileDescriptor);

} // namespace quorvane
