#pragma once

#include <QString>
#include <QStringList>

#include <variant>

namespace quorvane {

/// What the program is to do.
struct WindowOptions {
    enum class Task { window, alert, copy };

    /// To be printed, and then the program ends.
    struct Message {
        QString text;
        bool isError = false;
    };

    Task task = Task::window;
    QString layoutFile; ///< for a window
    bool allDesktops = false;
    bool center = false;
    int level = 0; ///< above 0: in front of ordinary windows

    /// `arguments` begin with the name of the program.
    [[nodiscard]] static std::variant<WindowOptions, Message> parse(const QStringList& arguments,
                                                                    const QString& version);
};

} // namespace quorvane
