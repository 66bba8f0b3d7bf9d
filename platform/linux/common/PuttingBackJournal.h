#pragma once

#include "platform/Log.h"
#include "platform/linux/common/JournalWriter.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace quorvane {

/// One change of the machine that is to be undone. What `key`, `found` and `set` hold is up to the
/// kind.
struct JournalEntry {
    QString kind; ///< for example "display"
    QString key;  ///< which one of its kind, for example the device's name
    QJsonValue found;
    QJsonValue set;
    JournalWriter writer;

    [[nodiscard]] bool operator==(const JournalEntry&) const = default;
};

/// One line of the journal without its end:
/// {"found":700,"key":"intel_backlight","kind":"display","pid":811,"set":[350],"start":20410}
[[nodiscard]] QByteArray journalLine(const JournalEntry& entry);

/// Nothing when the line is no entry. Members that are not known are ignored.
[[nodiscard]] std::optional<JournalEntry> journalEntry(const QByteArray& line);

/// What this user's processes have changed on the machine and not yet put back, so that a later
/// run can put it back after a crash: a file of one JSON object a line. Write an entry before the
/// change is made, strike it off after undoing it.
///
/// Every access reads the file anew and writes it in one step, under a lock that all processes
/// share; a process that dies in between leaves the old file or the new one.
///
/// A line that is no entry is reported once and moved to a file beside, with ".unreadable" added to
/// its name: left in place it would be reported at every access, and dropped it could not be looked
/// into. Main thread only.
class PuttingBackJournal {
  public:
    using Entries = std::vector<JournalEntry>;

    PuttingBackJournal(const QString& path, LogSink& log,
                       const JournalWriter& self = JournalWriter::self());

    /// In the folder that lives as long as the user's session; empty when there is none.
    [[nodiscard]] static QString defaultPath();

    [[nodiscard]] const JournalWriter& self() const { return self_; }

    /// Whether this process may alter the entry: it is its own, or its writer is dead.
    [[nodiscard]] bool mayAlter(const JournalEntry& entry) const;

    /// All entries, or nothing, with a log line, when the file cannot be read.
    [[nodiscard]] std::optional<Entries> entries();

    /// Lets `change` alter the entries and makes the outcome durable. Returns false, with a log
    /// line, when that failed: the file is then as it was. The same reason is logged once.
    [[nodiscard]] bool update(const std::function<void(Entries&)>& change);

  private:
    std::optional<Entries> readAndSetUnreadableAside();
    bool write(const Entries& entries);
    bool moveAside(const QByteArray& lines);
    bool makeFolder();
    bool failed(const QString& reason);

    QString path_;
    LogSink& log_;
    JournalWriter self_;
    QString lastFailure_;
};

} // namespace quorvane
