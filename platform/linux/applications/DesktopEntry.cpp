#include "platform/linux/applications/DesktopEntry.h"

#include "platform/linux/applications/LaunchCommand.h"

namespace quorvane {

namespace {

// No application has a longer name or class; an Exec line may be longer, but not its program.
constexpr qsizetype longestValue = 512;

// A value that is not UTF-8 is none: whoever compares or shows it could do nothing with it.
QByteArray entryValue(const QByteArray& raw) {
    QByteArray value;
    for (qsizetype at = 0; at < raw.size() && value.size() < longestValue; ++at) {
        if (raw.at(at) != '\\' || at + 1 >= raw.size()) {
            value.append(raw.at(at));
            continue;
        }
        switch (raw.at(++at)) {
        case 's':
        case 'n':
        case 'r':
        case 't':
            value.append(' '); // a name is shown in one line
            break;
        default:
            value.append(raw.at(at));
        }
    }
    if (raw.size() >= longestValue || !value.isValidUtf8() || value.contains('\0')) {
        return {};
    }
    return value;
}

// The Exec line keeps its backslashes that are inside quotes: "\\\\" is one there.
QByteArray execValue(const QByteArray& raw) {
    QByteArray value = raw.left(longestValue * 8);
    value.replace("\\\\", "\\");
    return value;
}

bool isTrue(const QByteArray& raw) {
    return raw == "true" || raw == "1";
}

bool listContains(const QByteArray& list, const char* wanted) {
    return list.size() < longestValue * 8 && list.split(';').contains(wanted);
}

// One pass over the lines of the one group that counts.
class EntryReader {
  public:
    explicit EntryReader(const QList<QByteArray>& languages)
        : languages_(languages), nameRank_(languages.size() + 1) {}

    void read(const QByteArray& text) {
        qsizetype begin = text.startsWith("\xEF\xBB\xBF") ? 3 : 0;
        while (begin < text.size() && !isPastGroup_) {
            const qsizetype end = text.indexOf('\n', begin);
            const qsizetype length = (end < 0 ? text.size() : end) - begin;
            readLine(QByteArray::fromRawData(text.constData() + begin, length).trimmed());
            begin += length + 1;
        }
    }

    [[nodiscard]] bool isApplication() const { return isInGroup_ && isApplication_; }

    DesktopEntry entry;

  private:
    void readLine(const QByteArray& line) {
        if (line.startsWith('[')) {
            isPastGroup_ = isInGroup_;
            isInGroup_ = isInGroup_ || line == "[Desktop Entry]";
            return;
        }
        const qsizetype sign = line.indexOf('=');
        if (isInGroup_ && sign > 0 && !line.startsWith('#')) {
            readKey(line.left(sign).trimmed(), line.mid(sign + 1).trimmed());
        }
    }

    void readKey(const QByteArray& key, const QByteArray& value) {
        if (key == "Type") {
            isApplication_ = value == "Application";
        } else if (key == "Exec") {
            entry.program = entryValue(programOfLaunchCommand(execValue(value)));
        } else if (key == "StartupWMClass") {
            entry.startupWmClass = entryValue(value);
        } else if (key == "Hidden") {
            entry.isDeleted = isTrue(value);
        } else if (key == "Categories") {
            entry.isTerminal = listContains(value, "TerminalEmulator");
        } else if (key == "Name") {
            takeName(languages_.size(), value);
        } else if (key.startsWith("Name[") && key.endsWith(']')) {
            takeName(languages_.indexOf(key.mid(5, key.size() - 6)), value);
        }
    }

    // The smaller the rank, the better the user understands it.
    void takeName(qsizetype rank, const QByteArray& raw) {
        if (rank < 0 || rank >= nameRank_) {
            return;
        }
        if (const QByteArray name = entryValue(raw); !name.isEmpty()) {
            entry.name = name;
            nameRank_ = rank;
        }
    }

    const QList<QByteArray>& languages_;
    qsizetype nameRank_;
    bool isInGroup_ = false;
    bool isPastGroup_ = false;
    bool isApplication_ = true; ///< broken ones at times do not say what they are
};

} // namespace

std::optional<DesktopEntry> DesktopEntry::parse(const QByteArray& id, const QByteArray& text,
                                                const QList<QByteArray>& languages) {
    EntryReader reader(languages);
    reader.read(text);
    if (!reader.isApplication()) {
        return std::nullopt;
    }
    reader.entry.id = id;
    return reader.entry;
}

QList<QByteArray> DesktopEntry::languagesOfTheUser() {
    QByteArray locale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.isEmpty()) {
            locale = qgetenv(variable);
        }
    }
    // "de_AT.UTF-8@euro" is read as "de_AT@euro", "de_AT", "de@euro", "de".
    const qsizetype at = locale.indexOf('@');
    const QByteArray modifier = at < 0 ? QByteArray() : locale.mid(at);
    const QByteArray place = locale.left(at).split('.').first();
    const QByteArray language = place.split('_').first();
    QList<QByteArray> tags;
    for (const QByteArray& tag : {place + modifier, place, language + modifier, language}) {
        if (!tag.isEmpty() && tag != "C" && tag != "POSIX" && !tags.contains(tag)) {
            tags.append(tag);
        }
    }
    return tags;
}

} // namespace quorvane
