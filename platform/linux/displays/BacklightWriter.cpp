#include "platform/linux/displays/BacklightWriter.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <thread>

namespace quorvane {

BacklightWriter::BacklightWriter(const QDBusConnection& systemBus, LogSink& log,
                                 const Backlights& backlights)
    : log_(log), backlights_(backlights), logind_(systemBus) {
    connect(&logind_, &LogindBrightness::appeared, this, &BacklightWriter::tryAgain);
}

void BacklightWriter::write(const QString& device, int raw) {
    const int inRange = std::clamp(raw, 0, backlights_.maximum(device).value_or(raw));
    Job& job = jobs_[device];
    job.failure.reset();
    if (job.sent) {
        job.next = inRange;
    } else {
        send(device, inRange);
    }
}

std::optional<int> BacklightWriter::underWay(const QString& device) const {
    const auto job = jobs_.constFind(device);
    if (job == jobs_.constEnd()) {
        return std::nullopt;
    }
    return job->next ? job->next : job->sent;
}

bool BacklightWriter::hasFailed(const QString& device) const {
    const auto job = jobs_.constFind(device);
    return job != jobs_.constEnd() && job->failure.has_value();
}

void BacklightWriter::send(const QString& device, int raw) {
    jobs_[device].sent = raw;
    logind_.set(device, raw, [this, device](const QString& error) { answered(device, error); });
}

void BacklightWriter::answered(const QString& device, const QString& logindError) {
    Job& job = jobs_[device];
    const int raw = job.sent.value_or(0);
    job.sent.reset();
    if (job.next) {
        const int next = *job.next;
        job.next.reset();
        send(device, next);
        return;
    }
    const bool isWritten = logindError.isEmpty() || writeDirectly(device, raw, logindError);
    if (isWritten) {
        job.lastComplaint.clear();
    } else {
        job.failure = Failure{raw, backlights_.raw(device)};
    }
    Q_EMIT settled(device, isWritten);
}

bool BacklightWriter::writeDirectly(const QString& device, int raw, const QString& logindError) {
    const int error = backlights_.setRaw(device, raw);
    if (error != 0) {
        complain(device, raw, logindError, error);
    }
    return error == 0;
}

void BacklightWriter::complain(const QString& device, int raw, const QString& logindError,
                               int fileError) {
    const QString reasons =
        QStringLiteral("logind says \"%1\" and %2 cannot be written (%3)")
            .arg(logindError, backlights_.brightnessFile(device), qt_error_string(fileError));
    Job& job = jobs_[device];
    if (reasons == job.lastComplaint) {
        return;
    }
    job.lastComplaint = reasons;
    log_.write(QStringLiteral("The brightness of the display %1 cannot be set to %2: %3. Run "
                              "Quorvane in the session that shows on this display, or give your "
                              "user the right to write that file")
                   .arg(device)
                   .arg(raw)
                   .arg(reasons));
}

void BacklightWriter::tryAgain() {
    const QStringList devices = jobs_.keys();
    for (const QString& device : devices) {
        Job& job = jobs_[device];
        if (!job.failure) {
            continue;
        }
        const Failure failure = *job.failure;
        if (backlights_.raw(device) == failure.inPlace) {
            write(device, failure.raw);
        } else {
            job.failure.reset(); // somebody else has set it since
            Q_EMIT settled(device, false);
        }
    }
}

bool BacklightWriter::waitUntilIdle(std::chrono::milliseconds limit) {
    constexpr std::chrono::milliseconds pause{1};
    const QDeadlineTimer deadline(limit);
    while (!isIdle()) {
        if (deadline.hasExpired()) {
            return false;
        }
        std::this_thread::sleep_for(pause);
        logind_.deliverAnswers();
    }
    return true;
}

bool BacklightWriter::isIdle() const {
    return std::none_of(jobs_.begin(), jobs_.end(),
                        [](const Job& job) { return job.sent.has_value(); });
}

} // namespace quorvane
