#include "platform/trace/FailureNotes.h"

#include <algorithm>

namespace dovrel {

FailureNotes* FailureNotes::running = nullptr;

FailureNotes::FailureNotes() noexcept {
    running = this;
}

FailureNotes::~FailureNotes() {
    if (running == this) running = nullptr;
}

void FailureNotes::clear() noexcept {
    dropSteps();
    request_.clear();
    foreignException_.clear();
    serverError_.reset();
}

const std::string& FailureNotes::failedStep() const {
    static_assert(TraceArea::kConnection < TraceArea::kExchange);
    const auto hasText = [](const std::string& step) { return !step.empty(); };
    const auto found = std::find_if(failedSteps_.begin(), failedSteps_.end(), hasText);
    return found != failedSteps_.end() ? *found : failedSteps_.front();
}

std::string FailureNotes::lastFailedStep() {
    return running != nullptr ? running->failedStep() : "";
}

void FailureNotes::dropFailedStep(TraceArea area) noexcept {
    if (running != nullptr) running->failedSteps_[static_cast<size_t>(area)].clear();
}

void FailureNotes::dropFailedSteps() noexcept {
    if (running != nullptr) running->dropSteps();
}

void FailureNotes::dropSteps() noexcept {
    for (std::string& step : failedSteps_)
        step.clear();
}

void FailureNotes::addForeignException(const char* what) noexcept {
    if (running != nullptr) note(running->foreignException_, [what] { return what; });
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
