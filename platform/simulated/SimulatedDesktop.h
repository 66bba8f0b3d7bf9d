#pragma once

#include "platform/LoginItems.h"
#include "platform/Opener.h"
#include "platform/Pasteboard.h"
#include "platform/ProgramCopies.h"
#include "platform/SleepEvents.h"

#include <QList>
#include <QMap>

namespace quorvane {

class SimulatedLoginItems final : public LoginItems {
  public:
    [[nodiscard]] bool launchOnLogin() const override { return launches_; }

    void setLaunchOnLogin(bool launches) override {
        launches_ = launches;
        ++writes_;
    }

    [[nodiscard]] int writes() const { return writes_; }

  private:
    bool launches_ = false;
    int writes_ = 0;
};

class SimulatedOpener final : public Opener {
  public:
    void openURL(const QUrl& url) override { openedURLs_.append(url); }

    [[nodiscard]] const QList<QUrl>& openedURLs() const { return openedURLs_; }

  private:
    QList<QUrl> openedURLs_;
};

class SimulatedPasteboard final : public Pasteboard {
  public:
    void setString(const QString& text) override { string_ = text; }

    [[nodiscard]] const QString& string() const { return string_; }

  private:
    QString string_;
};

class SimulatedProgramCopies final : public ProgramCopies {
  public:
    [[nodiscard]] int running(const QString& bundleIdentifier) const override {
        return copies_.value(bundleIdentifier);
    }

    /// The user starts one.
    void run(const QString& bundleIdentifier) { ++copies_[bundleIdentifier]; }

  private:
    QMap<QString, int> copies_;
};

/// The lid is closed, and opened again.
class SimulatedSleepEvents final : public SleepEvents {
  public:
    void sleep() { Q_EMIT willSleep(); }

    void wake() { Q_EMIT didWake(); }
};

} // namespace quorvane
