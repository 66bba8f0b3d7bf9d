#pragma once

#include <sys/types.h>

namespace quorvane {

/// For a child process between fork and exec: lets all signals through again. This program holds
/// those that end it, and a child that inherited that could not be ended.
void releaseSignals();

/// For a child process between fork and exec: from here on it gets `signal` when the thread that
/// has forked it ends. Where `parent`, which is what getpid() was before the fork, has ended
/// already, nobody would send that signal any more, and this ends the child.
void endWithParent(pid_t parent, int signal);

} // namespace quorvane
