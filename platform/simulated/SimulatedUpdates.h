#pragma once

#include "platform/MainQueue.h"
#include "platform/UpdateService.h"

#include <QObject>

#include <utility>
#include <vector>

namespace quorvane {

/// The distribution's delivery of packages, with the answer that a test or the demo wants.
class SimulatedUpdates final : public UpdateService {
  public:
    void look(Download download, std::function<void(const UpdateStatus&)> done) override {
        looks.push_back(download);
        queueOnMain(&context_, [this, done = std::move(done)] { done(status); });
    }

    UpdateStatus status{UpdateStatus::Kind::UpToDate, {}};
    std::vector<Download> looks; ///< every question so far

  private:
    QObject context_;
};

} // namespace quorvane
