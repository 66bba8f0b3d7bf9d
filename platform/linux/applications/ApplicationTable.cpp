#include "platform/linux/applications/ApplicationTable.h"

#include "platform/Log.h"
#include "platform/linux/common/BoundedFile.h"

#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

// Thousands of rows. A larger file is something else under this name.
constexpr qsizetype longestTable = qsizetype{256} * 1024;

// What is not a table at all must not fill the log.
constexpr int mostComplaints = 10;

// The names of bus names, bundles and desktop entries.
bool isWord(const QByteArray& word) {
    constexpr qsizetype longest = 255;
    return !word.isEmpty() && word.size() <= longest && word.isValidUtf8() &&
           std::none_of(word.cbegin(), word.cend(), [](char character) {
               const auto code = static_cast<unsigned char>(character);
               return code <= 0x20 || code == 0x7F || character == '*';
           });
}

} // namespace

ApplicationTable::ApplicationTable(const QString& bundleFile, const QString& userFile, LogSink& log)
    : bundleFile_(bundleFile), userFile_(userFile), log_(log) {}

QString ApplicationTable::userFileOfTheSession() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/com.TarnwickStudios.quorvane.applications.tsv");
}

QString ApplicationTable::identifierOf(const QByteArray& linuxId) {
    if (linuxId.isEmpty()) {
        return {};
    }
    refresh();
    const QByteArray id = linuxId.toLower();
    QString identifier = lookUp(userRows_, id);
    return identifier.isEmpty() ? lookUp(bundleRows_, id) : identifier;
}

QString ApplicationTable::lookUp(const Rows& rows, const QByteArray& linuxId) {
    const auto found = std::find_if(rows.cbegin(), rows.cend(), [&linuxId](const Row& row) {
        return row.isPrefix ? linuxId.startsWith(row.linuxId) : linuxId == row.linuxId;
    });
    return found == rows.cend() ? QString() : found->identifier;
}

void ApplicationTable::refresh() {
    const FileStamp stamp = userFile_.stamp();
    if (!isLoaded_) {
        bundleRows_ = load(bundleFile_.path());
    }
    if (!isLoaded_ || stamp != userStamp_) {
        userRows_ = load(userFile_.path());
    }
    userStamp_ = stamp;
    isLoaded_ = true;
}

ApplicationTable::Rows ApplicationTable::load(const QString& path) const {
    Rows rows;
    int number = 0;
    int complaints = 0;
    const QByteArray text = readBounded(path, longestTable).value_or(QByteArray());
    for (const QByteArray& raw : text.split('\n')) {
        ++number;
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith('#')) {
            continue;
        }
        if (std::optional<Row> row = parse(line)) {
            rows.push_back(std::move(*row));
        } else if (++complaints <= mostComplaints) {
            log_.write(QStringLiteral("%1, line %2: this is no row \"linux-id<TAB>identifier\"; "
                                      "it is skipped.")
                           .arg(path, QString::number(number)));
        }
    }
    if (complaints > mostComplaints) {
        log_.write(QStringLiteral("%1: %2 more such lines are skipped.")
                       .arg(path, QString::number(complaints - mostComplaints)));
    }
    rows.shrink_to_fit();
    return rows;
}

std::optional<ApplicationTable::Row> ApplicationTable::parse(const QByteArray& line) {
    const QList<QByteArray> columns = line.split('\t');
    if (columns.size() != 2) {
        return std::nullopt;
    }
    QByteArray id = columns.at(0).trimmed().toLower();
    const QByteArray identifier = columns.at(1).trimmed();
    const bool isPrefix = id.endsWith('*');
    id.chop(isPrefix ? 1 : 0);
    // A lone "*" would make everything one application.
    if (!isWord(id) || !isWord(identifier)) {
        return std::nullopt;
    }
    return Row{id, isPrefix, QString::fromUtf8(identifier)};
}

} // namespace quorvane
