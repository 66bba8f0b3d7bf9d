#pragma once

#include <QString>

namespace quorvane {

/// What the user pastes next. Main thread only.
class Pasteboard {
  public:
    virtual ~Pasteboard() = default;

    virtual void setString(const QString& text) = 0;
};

} // namespace quorvane
