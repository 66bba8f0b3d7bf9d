#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace quorvane {

/// What tells an installed application: the few keys of its desktop entry that Quorvane needs. All
/// texts are UTF-8; the resident program keeps hundreds of these.
struct DesktopEntry {
    QByteArray id;             ///< of its file, without ".desktop"
    QByteArray name;           ///< in the user's language
    QByteArray startupWmClass; ///< what its windows say that they are
    QByteArray program;        ///< the file name of what it starts; empty: that does not tell
    bool isTerminal = false;   ///< it is a terminal emulator: other programs run inside it
    bool isDeleted = false;    ///< it stands for "not installed" and hides others with its id

    /// Reads as much of `text` as makes sense. Nothing when it is no entry of an application.
    /// `languages` are the tags of translated keys, such as "de_AT" and "de", the best first.
    [[nodiscard]] static std::optional<DesktopEntry>
    parse(const QByteArray& id, const QByteArray& text, const QList<QByteArray>& languages);

    /// The tags for the language of the user's messages.
    [[nodiscard]] static QList<QByteArray> languagesOfTheUser();
};

} // namespace quorvane
