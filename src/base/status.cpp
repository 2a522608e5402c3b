#include "base/status.h"

#include <cstring>

namespace wakeline {

Status Status::Failure(std::string action, std::string object, std::string reason) {
    Status status;
    status.failed_ = true;
    status.action_ = std::move(action);
    status.object_ = std::move(object);
    status.reason_ = std::move(reason);
    return status;
}

Status Status::FromErrno(std::string action, std::string object, int error) {
    return Failure(std::move(action), std::move(object), std::strerror(error));
}

std::string Status::Message() const {
    if (!failed_) {
        return {};
    }
    std::string text = "could not " + action_;
    if (!object_.empty()) {
        text += ' ';
        text += object_;
    }
    if (!reason_.empty()) {
        text += ": ";
        text += reason_;
    }
    return text;
}

}  // namespace wakeline
