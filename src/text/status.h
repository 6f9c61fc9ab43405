#pragma once

#include <optional>
#include <string>
#include <utility>

namespace zento {

// The outcome of something that may fail: success, or a text that says what failed and why.
// A caller that passes a failure on adds what it was doing with `Within`, so that the text a person
// finally reads runs from the outside in: "save run.znt: write: no space left on device".
class [[nodiscard]] Status {
 public:
  Status() = default;
  static Status Ok() { return {}; }
  static Status Failure(std::string why) {
    Status status;
    status.failed_ = true;
    status.why_ = std::move(why);
    return status;
  }

  bool ok() const { return !failed_; }
  // Empty on success.
  const std::string& why() const { return why_; }

  Status Within(const std::string& doing) const {
    return ok() ? *this : Failure(doing + ": " + why_);
  }

 private:
  bool failed_ = false;
  std::string why_;
};

// A value, or the failure that stood in its way.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : value_(std::move(value)) {}            // NOLINT(*-explicit-*)
  Result(Status failure) : status_(std::move(failure)) {}  // NOLINT(*-explicit-*)

  bool ok() const { return value_.has_value(); }
  const Status& status() const { return status_; }
  const std::string& why() const { return status_.why(); }
  T& value() { return *value_; }
  const T& value() const { return *value_; }
  T* operator->() { return &*value_; }
  const T* operator->() const { return &*value_; }

 private:
  std::optional<T> value_;
  Status status_;
};

}  // namespace zento
