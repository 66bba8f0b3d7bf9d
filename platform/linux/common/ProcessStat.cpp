#include "platform/linux/common/ProcessStat.h"

#include "platform/linux/common/BoundedFile.h"

#include <QByteArrayView>

#include <array>
#include <utility>

namespace quorvane {

namespace {

constexpr qsizetype longestStat = 4096; // a line of 52 numbers and a short name

// Counted from the state, which is field 3 of proc(5).
enum Field : std::size_t {
    State = 0,
    Parent = 1,
    Group = 2,
    Session = 3,
    Terminal = 4,
    UserTicks = 14 - 3,
    SystemTicks = 15 - 3,
    Threads = 20 - 3,
    StartTime = 22 - 3,
    Count
};

using Fields = std::array<QByteArrayView, Field::Count>;

/// The first fields of a line; nothing when it has fewer.
std::optional<Fields> fieldsOf(QByteArrayView line) {
    Fields fields;
    for (QByteArrayView& field : fields) {
        if (line.isEmpty()) {
            return std::nullopt;
        }
        const qsizetype end = line.indexOf(' ');
        field = end < 0 ? line : line.first(end);
        line = end < 0 ? QByteArrayView() : line.sliced(end + 1);
    }
    return fields;
}

} // namespace

std::optional<ProcessStat> ProcessStat::parse(const QByteArray& text) {
    const qsizetype nameBegin = text.indexOf(" (");
    const qsizetype nameEnd = text.lastIndexOf(") ");
    if (nameBegin < 0 || nameEnd < nameBegin) {
        return std::nullopt;
    }
    const std::optional<Fields> fields = fieldsOf(QByteArrayView(text).sliced(nameEnd + 2));
    if (!fields || fields->at(State).size() != 1) {
        return std::nullopt;
    }
    bool areNumbers = true;
    const auto number = [&](QByteArrayView field) {
        bool isNumber = false;
        const qint64 value = field.toLongLong(&isNumber);
        areNumbers = areNumbers && isNumber;
        return value;
    };
    const auto id = [&](QByteArrayView field) { return static_cast<std::int32_t>(number(field)); };
    ProcessStat stat;
    stat.pid = id(QByteArrayView(text).first(nameBegin));
    stat.name = text.mid(nameBegin + 2, nameEnd - nameBegin - 2);
    stat.state = fields->at(State).front();
    stat.parent = id(fields->at(Parent));
    stat.group = id(fields->at(Group));
    stat.session = id(fields->at(Session));
    stat.terminal = id(fields->at(Terminal));
    stat.userTicks = number(fields->at(UserTicks));
    stat.systemTicks = number(fields->at(SystemTicks));
    stat.threads = id(fields->at(Threads));
    stat.startTime = number(fields->at(StartTime));
    return areNumbers ? std::optional(std::move(stat)) : std::nullopt;
}

std::optional<ProcessStat> ProcessStat::read(qint64 pid, const QString& procFolder) {
    const QString path = procFolder + QLatin1Char('/') + QString::number(pid);
    const std::optional<QByteArray> text = readBounded(path + QStringLiteral("/stat"), longestStat);
    return text ? parse(*text) : std::nullopt;
}

} // namespace quorvane
