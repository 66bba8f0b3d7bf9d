#include "apps/helper/TaskSampler.h"

#include "apps/helper/TaskReport.h"

#include <QTimer>

#include <utility>

namespace quorvane {

TaskSampler::TaskSampler(QString processes) : processes_(std::move(processes)) {
    thread_.setMaxThreadCount(1);
    thread_.setExpiryTimeout(static_cast<int>(2 * interval.count()));
}

TaskSampler::~TaskSampler() {
    thread_.waitForDone();
}

void TaskSampler::sample(const Lines& lines) {
    waiting_.append(lines);
    if (waiting_.size() == 1) {
        look(&TaskSampler::begin);
    }
}

void TaskSampler::look(void (TaskSampler::*seen)(const TaskUses& uses)) {
    thread_.start([this, seen, processes = processes_] {
        const TaskUses uses = readTaskUses(processes);
        QMetaObject::invokeMethod(
            this, [this, seen, uses] { (this->*seen)(uses); }, Qt::QueuedConnection);
    });
}

void TaskSampler::begin(const TaskUses& uses) {
    before_ = uses;
    elapsed_.start();
    QTimer::singleShot(interval, this, [this] { look(&TaskSampler::finish); });
}

void TaskSampler::finish(const TaskUses& uses) {
    const QStringList lines =
        taskReport(std::exchange(before_, {}), uses, std::chrono::milliseconds(elapsed_.elapsed()),
                   QDateTime::currentDateTime());
    for (const Lines& each : std::exchange(waiting_, {})) {
        each(lines);
    }
}

} // namespace quorvane
