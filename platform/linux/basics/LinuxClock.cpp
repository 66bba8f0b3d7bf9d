#include "platform/linux/basics/LinuxClock.h"

#include <QTimer>

#include <thread>
#include <utility>

namespace quorvane {

namespace {

constexpr Seconds coarseFrom{60.0};

int milliseconds(Seconds duration) {
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(duration).count());
}

class LoopTimer final : public Timer {
  public:
    LoopTimer(Seconds interval, Repeats repeats, std::function<void()> block)
        : timer_(std::make_unique<QTimer>()) {
        timer_->setTimerType(interval >= coarseFrom ? Qt::CoarseTimer : Qt::PreciseTimer);
        timer_->setSingleShot(repeats == Repeats::No);
        timer_->setInterval(milliseconds(interval));
        QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(), std::move(block));
        timer_->start();
    }

    // The block that runs right now may be the one that drops this handle, and with it the QTimer
    // that is still in the middle of emitting.
    ~LoopTimer() override {
        timer_->stop();
        timer_.release()->deleteLater();
    }

    LoopTimer(const LoopTimer&) = delete;
    LoopTimer& operator=(const LoopTimer&) = delete;

  private:
    std::unique_ptr<QTimer> timer_;
};

} // namespace

QDateTime LinuxClock::now() const {
    return QDateTime::currentDateTimeUtc();
}

Seconds LinuxClock::monotonic() const {
    return std::chrono::steady_clock::now().time_since_epoch();
}

std::unique_ptr<Timer> LinuxClock::schedule(Seconds interval, Repeats repeats,
                                            std::function<void()> block) {
    return std::make_unique<LoopTimer>(interval, repeats, std::move(block));
}

void LinuxClock::sleep(Seconds duration) {
    std::this_thread::sleep_for(duration);
}

bool LinuxClock::wait(QSemaphore& semaphore, Seconds timeout) {
    return semaphore.tryAcquire(1, milliseconds(timeout));
}

} // namespace quorvane
