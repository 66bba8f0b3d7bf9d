#pragma once

#include <QString>

#include <utility>
#include <variant>

namespace quorvane {

/// Why there is no value, in words for a log line.
struct Failure {
    QString why;

    friend bool operator==(const Failure&, const Failure&) = default;
};

/// A value, or why there is none: the shape in which a function of the project tells that it did
/// not work out, where there is more to tell than "nothing". Asking for the part that is not there
/// ends the process.
template <class Value>
class [[nodiscard]] Result {
  public:
    Result(Value value) : either_(std::in_place_index<0>, std::move(value)) {}

    Result(Failure failure) : either_(std::in_place_index<1>, std::move(failure)) {}

    [[nodiscard]] explicit operator bool() const { return either_.index() == 0; }

    [[nodiscard]] const Value& operator*() const { return std::get<0>(either_); }

    [[nodiscard]] const Value* operator->() const { return &std::get<0>(either_); }

    [[nodiscard]] const QString& error() const { return std::get<1>(either_).why; }

  private:
    std::variant<Value, Failure> either_;
};

/// Whether something was done, or why not.
using Done = std::monostate;

} // namespace quorvane
