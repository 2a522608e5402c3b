#pragma once
// The outcome of one operation on the outside world (a file, a device, a socket, a service):
// ok, or failed with what was attempted, on what, and the system's own reason, so that every
// log line about a failure can say why and not only that. Core code returns it; nothing
// throws across an interface. Result<T> is a value or the Status that says why there is none.

#include <optional>
#include <string>
#include <utility>

namespace wakeline {

class Status {
  public:
    // Ok.
    Status() = default;

    // A failure: `action` is the verb phrase of what was attempted ("append to", "open",
    // "rename", "connect to", "read"), `object` what it was attempted on (a path, a device, an
    // endpoint, a D-Bus service; may be empty), `reason` the system's text ("No space left on
    // device", a Qt error string). An empty reason still makes a failure.
    static Status Failure(std::string action, std::string object, std::string reason);
    // A failure whose reason is strerror(error).
    static Status FromErrno(std::string action, std::string object, int error);

    bool Ok() const { return !failed_; }
    const std::string& Action() const { return action_; }
    const std::string& Object() const { return object_; }
    const std::string& Reason() const { return reason_; }

    // One line for a log or a message, e.g. "could not append to /x/20261123.TRT: No space
    // left on device"; empty when ok.
    std::string Message() const;

  private:
    bool failed_ = false;
    std::string action_;
    std::string object_;
    std::string reason_;
};

// A value, or the failed Status that says why there is none. A Result made from an ok Status
// is a programming error; it reads as a failure without a reason.
template <typename T>
class Result {
  public:
    Result(T value) : value_(std::move(value)) {}           // NOLINT: implicit, as a return value
    Result(Status failure) : status_(std::move(failure)) {  // NOLINT
        if (status_.Ok()) {
            status_ = Status::Failure("produce", "", "");
        }
    }

    bool Ok() const { return value_.has_value(); }
    // The value; only when Ok().
    const T& Value() const& { return *value_; }
    T&& Value() && { return std::move(*value_); }
    // Ok when there is a value.
    const Status& GetStatus() const { return status_; }
    // The value as an optional, for callers to whom the reason does not matter.
    const std::optional<T>& Optional() const& { return value_; }
    std::optional<T> Optional() && { return std::move(value_); }

  private:
    std::optional<T> value_;
    Status status_;
};

}  // namespace wakeline
