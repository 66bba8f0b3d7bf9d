#pragma once

#include "apps/demo/DayPlan.h"

#include <QStringList>

#include <variant>

namespace quorvane {

struct DemoOptions {
    DayPlan plan;
    double speed = 1.0; ///< times as fast; moving picture only
    bool plain = false; ///< lines even where a moving picture is possible

    /// To be printed, and then the program ends.
    struct Message {
        QString text;
        bool isError = false;
    };

    /// `arguments` begin with the name of the program. Gives the options, or a message: the help,
    /// the version, or what is wrong with which argument and what is allowed instead.
    [[nodiscard]] static std::variant<DemoOptions, Message> parse(const QStringList& arguments,
                                                                  const QString& version);
};

} // namespace quorvane
