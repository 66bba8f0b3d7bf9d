#pragma once

#include "platform/LoginItems.h"
#include "platform/Pasteboard.h"

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

class SimulatedPasteboard final : public Pasteboard {
  public:
    void setString(const QString& text) override { string_ = text; }

    [[nodiscard]] const QString& string() const { return string_; }

  private:
    QString string_;
};

} // namespace quorvane
