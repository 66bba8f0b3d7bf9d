#pragma once

#include "platform/linux/common/WholeFile.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace quorvane {

class LogSink;

/// Which identifiers the modules use for applications that call themselves differently on Linux. A
/// file of the bundle, with one of the user's on top: each row is a Linux id, a tab and an
/// identifier; a trailing "*" in the id stands for anything; "#" begins a comment; of several rows
/// that fit the first counts. A row that makes no sense is reported and skipped. The files are read
/// at the first question, and the user's again when it has changed. One thread at a time.
class ApplicationTable {
  public:
    /// `log` must outlive this. Neither file has to exist.
    ApplicationTable(const QString& bundleFile, const QString& userFile, LogSink& log);

    /// `$XDG_CONFIG_HOME/com.TarnwickStudios.quorvane.applications.tsv`.
    [[nodiscard]] static QString userFileOfTheSession();

    /// The identifier of a desktop-entry id, in any case; empty when no row fits.
    [[nodiscard]] QString identifierOf(const QByteArray& linuxId);

  private:
    struct Row {
        QByteArray linuxId; ///< in lower case, without the "*"
        bool isPrefix = false;
        QString identifier;
    };

    using Rows = std::vector<Row>;

    void refresh();
    [[nodiscard]] Rows load(const QString& path) const;
    [[nodiscard]] static std::optional<Row> parse(const QByteArray& line);
    [[nodiscard]] static QString lookUp(const Rows& rows, const QByteArray& linuxId);

    const WholeFile bundleFile_;
    const WholeFile userFile_;
    LogSink& log_;
    bool isLoaded_ = false;
    FileStamp userStamp_;
    Rows userRows_;
    Rows bundleRows_;
};

} // namespace quorvane
