#pragma once

#include <string>
#include <vector>

namespace quorvane {

/// What the tool that lists loaded extensions does: its exit status, and what it writes to standard
/// output and standard error.
struct ListerAnswer {
    int status = 0;
    std::string output;
    std::string complaint;
};

/// The answer of "kextstat" to these arguments (without the program's name), where `file` is the
/// helper's list. One bounded read of a file; never waits. Any thread.
[[nodiscard]] ListerAnswer answerOfLister(const char* file,
                                          const std::vector<std::string>& arguments);

} // namespace quorvane
