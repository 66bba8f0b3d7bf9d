#pragma once

#include <functional>

class QObject;

namespace quorvane {

/// Queues a block on the main queue: it runs on the main loop after everything that was queued
/// before, unless `context` is gone by then. Any thread.
void queueOnMain(QObject* context, std::function<void()> block);

/// The same for a block that stands on its own.
void queueOnMain(std::function<void()> block);

[[nodiscard]] bool isMainThread();

} // namespace quorvane
