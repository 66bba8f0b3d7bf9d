#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

namespace quorvane {

/// Something that happened during the day, as it is told to the person who watches.
struct DemoEvent {
    enum class Kind {
        Settings, ///< what the program found in the settings at its start
        Hardware, ///< the simulated laptop: plugged in, unplugged
        User,     ///< the simulated user did something
        Question, ///< the program asks, with buttons
        Notice,   ///< the program says something
        Mode,     ///< Low Power Mode went on or off
        Screen,   ///< the brightness changed
        Stored,   ///< a setting or a file was written
        Log       ///< a line of the system log
    };

    Kind kind = Kind::Log;
    QDateTime time;  ///< of the simulated clock
    int percent = 0; ///< the charge as the battery monitor tells it
    QString text;
};

/// One word for the kind: "question".
[[nodiscard]] QString kindName(DemoEvent::Kind kind);

using EventSink = std::function<void(const DemoEvent&)>;

/// Adds an event of now.
using Report = std::function<void(DemoEvent::Kind kind, const QString& text)>;

} // namespace quorvane
