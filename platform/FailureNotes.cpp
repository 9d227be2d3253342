#include "platform/FailureNotes.h"

namespace dovrel {

FailureNotes* FailureNotes::running = nullptr;

FailureNotes::FailureNotes() noexcept {
    running = this;
}

FailureNotes::~FailureNotes() {
    if (running == this) running = nullptr;
}

void FailureNotes::clear() noexcept {
    failedStep_.clear();
    request_.clear();
    serverError_.reset();
}

void FailureNotes::dropFailedStep() noexcept {
    if (running != nullptr) running->failedStep_.clear();
}

void FailureNotes::addServerError(uint32_t code, const std::string& text) noexcept {
    if (running == nullptr) return;
    try {
        running->serverError_ = ServerError{code, text};
    } catch (...) {
        running->serverError_.reset();
    }
}

}  // namespace dovrel
