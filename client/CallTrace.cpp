#include "client/CallTrace.h"

#include <pthread.h>

#include <algorithm>
#include <cstring>

#include "platform/text/TextConversions.h"
#include "platform/trace/TraceText.h"

namespace dovrel {

namespace {

constexpr char kInputMark[] = "> ";
constexpr char kOutputMark[] = "< ";

// Returns the value of pthread_self, which debuggers show as well. Its type is a number on some systems and a
// pointer on others.
std::string threadText() {
    const pthread_t self = pthread_self();
    uintptr_t value = 0;
    static_assert(sizeof self == sizeof value, "a thread is a number or a pointer");
    std::memcpy(&value, &self, sizeof value);
    return ", thread " + numberToText(value, 16, 1);
}

std::string argumentText(const char* name, const std::string& value) {
    return std::string(", ") + name + " " + value;
}

}  // namespace

void CallTrace::number(const char* name, uint32_t value) {
    inputs_ += argumentText(name, std::to_string(value));
}

void CallTrace::data(const char* name, const void* bytes, uint32_t length) {
    inputs_ += argumentText(name, byteCountText(length));
    if (wantsContents() && bytes != nullptr) addContent(kInputMark, name, traceDataText(bytes, length));
}

void CallTrace::handle(const char* name, void* const* bytes, uint32_t length) {
    const bool isReadable = succeeded_ && bytes != nullptr && !isOverwritten(bytes);
    data(name, isReadable ? *bytes : nullptr, length);
}

void CallTrace::identifier(const char* name, const void* bytes) {
    if (wantsContents()) addContent(kInputMark, name, traceDataText(bytes, POS_IDENTIFIER_SIZE));
}

void CallTrace::identifierHandle(const char* name, void* const* identifier) {
    const bool isReadable = succeeded_ && identifier != nullptr && !isOverwritten(identifier);
    if (isReadable && *identifier != nullptr) this->identifier(name, *identifier);
}

void CallTrace::text(const char* name, const char* value) {
    if (wantsContents() && value != nullptr)
        addContent(kInputMark, name, '"' + traceOneLineText(value) + '"');
}

void CallTrace::textAtBegin(const char* name, const char* value) {
    if (!hasReturned_ && value != nullptr && Trace::wants(TraceArea::kCalls, TraceLevel::kContents))
        addContent(kInputMark, name, '"' + traceOneLineText(value) + '"');
}

void CallTrace::output(const char* name, const void* bytes, uint32_t length) {
    outputs_ += argumentText(name, byteCountText(length));
    if (wantsContents() && bytes != nullptr) addContent(kOutputMark, name, traceDataText(bytes, length));
}

void CallTrace::outputNumber(const char* name, uint32_t value) {
    outputs_ += argumentText(name, std::to_string(value));
}

void CallTrace::outputIdentifier(const char* name, void* const* identifier) {
    if (wantsContents()) addContent(kOutputMark, name, traceDataText(*identifier, POS_IDENTIFIER_SIZE));
}

void CallTrace::writeResult(const char* name, const TraceTimer& timer) noexcept {
    Trace::write(TraceArea::kCalls, TraceLevel::kSteps, [&] {
        CallTrace call(name);
        call.succeeded_ = true;
        return call.endText(timer);
    });
}

std::string CallTrace::beginText() const {
    return inputs_ + threadText() + ": called" + contents_;
}

std::string CallTrace::endText(const TraceTimer& timer) const {
    return inputs_ + threadText() + (succeeded_ ? ": POS_OK" : ": POS_FAILURE") + outputs_ + ", " +
           timer.text() + contents_;
}

bool CallTrace::wantsContents() const {
    return succeeded_ && Trace::wants(TraceArea::kCalls, TraceLevel::kContents);
}

bool CallTrace::isOverwritten(const void* place) const {
    return std::find(outputPlaces_.begin(), outputPlaces_.end(), place) != outputPlaces_.end();
}

void CallTrace::addContent(const char* mark, const char* name, const std::string& value) {
    contents_ += std::string("\n") + mark + name + " = " + value;
}

}  // namespace dovrel
