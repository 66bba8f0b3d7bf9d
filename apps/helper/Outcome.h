#pragma once

#include <QString>

#include <functional>

namespace quorvane {

/// What became of a command, for people to read. The text is one line without a full stop and holds
/// nothing that a caller has sent.
struct Outcome {
    bool done = false;
    QString text;
};

/// Called once, on the main thread, possibly before the function that takes it returns.
using Reported = std::function<void(const Outcome& outcome)>;

} // namespace quorvane
