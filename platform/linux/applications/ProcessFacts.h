#pragma once

#include <QByteArray>

#include <cstdint>

namespace quorvane {

/// What the kernel tells of a process, as far as it tells whose program it is. What may not be
/// read, because it is another user's, is empty.
struct ProcessFacts {
    QByteArray controlGroups;  ///< the text of /proc/PID/cgroup
    QByteArray executable;     ///< the path of the program
    QByteArray firstArgument;  ///< what it was called as; programs change it at times
    QByteArray secondArgument; ///< of an interpreter: the program that it runs

    [[nodiscard]] bool operator==(const ProcessFacts&) const = default;

    /// All empty when there is no such process. Any thread.
    [[nodiscard]] static ProcessFacts of(std::int32_t pid);

    [[nodiscard]] static bool exists(std::int32_t pid);
};

} // namespace quorvane
