#include "platform/simulated/SimulatedClock.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>

namespace quorvane {

namespace {

std::int64_t toMicroseconds(Seconds duration) {
    return std::llround(duration.count() * 1e6);
}

QDateTime startOfTime() {
    // The constructor that takes Qt::UTC is deprecated, and what has replaced it is newer than 6.4.
    static const auto start =
        QDateTime::fromString(QStringLiteral("2026-01-05T09:00:00Z"), Qt::ISODate);
    return start;
}

} // namespace

struct SimulatedClock::Entry {
    std::int64_t interval;
    bool repeats;
    std::function<void()> block;
    bool stopped = false;
    DueOrder key{};
};

class SimulatedClock::Handle final : public Timer {
  public:
    Handle(const std::shared_ptr<Entries>& entries, std::shared_ptr<Entry> entry)
        : entries_(entries), entry_(std::move(entry)) {}

    ~Handle() override {
        entry_->stopped = true;
        if (const auto entries = entries_.lock()) {
            entries->erase(entry_->key);
        }
    }

    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

  private:
    std::weak_ptr<Entries> entries_; // the clock may be gone first
    std::shared_ptr<Entry> entry_;
};

SimulatedClock::SimulatedClock() : entries_(std::make_shared<Entries>()), due_(*entries_) {}

QDateTime SimulatedClock::now() const {
    return startOfTime().addMSecs(microseconds_ / 1000);
}

Seconds SimulatedClock::monotonic() const {
    return std::chrono::microseconds(microseconds_);
}

std::unique_ptr<Timer> SimulatedClock::schedule(Seconds interval, Repeats repeats,
                                                std::function<void()> block) {
    const auto entry = std::make_shared<Entry>(
        Entry{toMicroseconds(interval), repeats == Repeats::Yes, std::move(block)});
    insert(entry, microseconds_ + entry->interval);
    return std::make_unique<Handle>(entries_, entry);
}

void SimulatedClock::insert(const std::shared_ptr<Entry>& entry, std::int64_t due) {
    entry->key = {due, sequence_++};
    due_.emplace(entry->key, entry);
}

void SimulatedClock::sleep(Seconds duration) {
    microseconds_ += toMicroseconds(duration);
}

bool SimulatedClock::wait(QSemaphore& semaphore, Seconds timeout) {
    // Whoever is to release it in time has been told to do so already, at most a thread away.
    if (settle_) {
        settle_();
    }
    if (semaphore.tryAcquire()) {
        return true;
    }
    sleep(timeout);
    return false;
}

void SimulatedClock::advance(Seconds duration) {
    const std::int64_t end = microseconds_ + toMicroseconds(duration);
    runMainQueue();
    while (!due_.empty() && due_.begin()->first.first <= end) {
        fire(due_.begin());
        runMainQueue();
    }
    if (microseconds_ < end) {
        microseconds_ = end;
    }
}

void SimulatedClock::fire(Entries::iterator next) {
    const std::shared_ptr<Entry> entry = next->second;
    const std::int64_t due = next->first.first;
    due_.erase(next);
    if (microseconds_ < due) {
        microseconds_ = due;
    }
    if (entry->repeats) {
        // A loop that was held up longer than a period does not make up for the missed firings.
        insert(entry, std::max(due + entry->interval, microseconds_.load()));
    }
    ++firings_;
    entry->block();
}

Seconds SimulatedClock::shortestPeriod() const {
    Seconds shortest(std::numeric_limits<double>::infinity());
    for (const auto& [due, entry] : due_) {
        if (entry->repeats) {
            shortest = std::min(shortest, Seconds(std::chrono::microseconds(entry->interval)));
        }
    }
    return shortest;
}

void SimulatedClock::runMainQueue() {
    // Queued blocks may queue further ones; processEvents alone leaves those to its next call.
    constexpr int rounds = 16;
    for (int round = 0; round < rounds; ++round) {
        QCoreApplication::sendPostedEvents();
    }
    QCoreApplication::processEvents();
}

} // namespace quorvane
