#include "platform/simulated/SimulatedTasks.h"

namespace quorvane {

class SimulatedTasks::Process final : public Task {
  public:
    Process(SimulatedTasks& tasks, Run run) : tasks_(tasks), run_(std::move(run)) {}

    [[nodiscard]] QString launchPath() const override { return run_.launchPath; }

    bool launch() override {
        behaviour_ = tasks_.behaviours_.value(run_.launchPath);
        running_ = behaviour_.launches;
        if (running_) {
            started_ = tasks_.clock_.monotonic();
            index_ = tasks_.runs_.size();
            tasks_.runs_.append(run_);
        }
        return running_;
    }

    [[nodiscard]] bool isRunning() override {
        return running_ && (!behaviour_.duration ||
                            tasks_.clock_.monotonic() - started_ < *behaviour_.duration);
    }

    void terminate() override {
        if (isRunning()) {
            tasks_.runs_[index_].terminated = true;
            running_ = false;
        }
    }

    QByteArray readOutput() override { return behaviour_.output; }

  private:
    SimulatedTasks& tasks_;
    Run run_;
    Behaviour behaviour_;
    Seconds started_{0.0};
    qsizetype index_ = 0;
    bool running_ = false;
};

std::unique_ptr<Task> SimulatedTasks::task(const QString& launchPath,
                                           const QStringList& arguments) {
    return std::make_unique<Process>(*this, Run{launchPath, arguments});
}

} // namespace quorvane
