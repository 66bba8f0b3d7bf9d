#pragma once

#include "platform/Workspace.h"

#include <QList>
#include <QMultiMap>

namespace quorvane {

/// The running applications, by bundle identifier.
class SimulatedWorkspace final : public Workspace {
  public:
    [[nodiscard]] std::optional<std::int32_t>
    processIdentifierOf(const QString& bundleIdentifier) const override {
        const auto found = running_.constFind(bundleIdentifier);
        return found == running_.constEnd() ? std::nullopt : std::optional(*found);
    }

    [[nodiscard]] int
    runningApplicationsWithBundleIdentifier(const QString& bundleIdentifier) const override {
        return static_cast<int>(running_.count(bundleIdentifier));
    }

    void openURL(const QUrl& url) override { openedURLs_.append(url); }

    [[nodiscard]] const QList<QUrl>& openedURLs() const { return openedURLs_; }

    void run(const QString& bundleIdentifier, std::int32_t pid) {
        running_.insert(bundleIdentifier, pid);
    }

  private:
    QMultiMap<QString, std::int32_t> running_;
    QList<QUrl> openedURLs_;
};

} // namespace quorvane
