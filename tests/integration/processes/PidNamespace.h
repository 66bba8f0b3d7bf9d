#pragma once

#include <functional>

namespace quorvane::test {

/// A set of processes with ids of their own, from which no process outside can be seen or
/// signalled.
class PidNamespace {
  public:
    /// Starts this program again as the first process of a new namespace, in place of this one.
    /// Returns where that is not permitted.
    static void enter(char** argv);

    /// Whether this is the first process of a namespace made by `enter`.
    [[nodiscard]] static bool isFirstProcess();

    /// Whether this process is in a namespace made by `enter`.
    [[nodiscard]] static bool isInside();

    /// Runs the function in a child and returns its result. Collects meanwhile what has ended, as
    /// falls to the first process. With its end all the others are killed.
    static int runBelow(const std::function<int()>& function);
};

} // namespace quorvane::test
