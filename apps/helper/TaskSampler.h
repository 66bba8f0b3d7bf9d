#pragma once

#include "apps/helper/TaskUse.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include <chrono>
#include <functional>

namespace quorvane {

/// Looks at all processes twice, a second apart, and reports what each has used in between. All who
/// ask while it is at work get the same report. The looks are made on a thread of their own: they
/// take long on a machine with many threads. Main thread only.
class TaskSampler final : public QObject {
  public:
    using Lines = std::function<void(const QStringList& lines)>;

    static constexpr std::chrono::milliseconds interval{1000};

    /// `processes` is "/proc".
    explicit TaskSampler(QString processes);
    ~TaskSampler() override;
    TaskSampler(const TaskSampler&) = delete;
    TaskSampler& operator=(const TaskSampler&) = delete;

    /// The block runs later, once.
    void sample(const Lines& lines);

  private:
    void look(void (TaskSampler::*seen)(const TaskUses& uses));
    void begin(const TaskUses& uses);
    void finish(const TaskUses& uses);

    QString processes_;
    QList<Lines> waiting_;
    TaskUses before_;
    QElapsedTimer elapsed_;
    QThreadPool thread_;
};

} // namespace quorvane
