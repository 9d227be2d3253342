// CallTrace: the entries of the trace for calls of the exported functions (area "calls"): one when a call
// begins, one when it returns. They name the function, the application, the sizes and the thread:
//
//     calls: posCallMethod, application 65537, parameters 4 bytes, thread 7F50C3FFF6C0: called
//     calls: posCallMethod, application 65537, parameters 4 bytes, thread 7F50C3FFF6C0: POS_OK, result 4 bytes, 96 us
//
// The contents follow on further lines if the level asks for them, after success only: the host's pointers
// are certain to be valid only if the operation has used them. Only the name of an application is in the first
// entry, because the host may change it as soon as the operation has copied it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "dovrel/pos.h"
#include "platform/trace/Trace.h"

namespace dovrel {

/// Collects what an entry says about the arguments of a call. An exported function passes its arguments in
/// their order. Every function throws std::bad_alloc.
class CallTrace {
  public:
    /// `outputs`: the addresses of the call's outputs. An input with the same address has been overwritten when the
    /// call has succeeded, so its content is left out.
    explicit CallTrace(const char* function, std::vector<const void*> outputs = {})
        : inputs_(function), outputPlaces_(std::move(outputs)) {}

    /// An argument that is a number: "application 65537".
    void number(const char* name, uint32_t value);
    /// An argument that is a block: its size, and its bytes as content. Null counts as an empty block.
    void data(const char* name, const void* bytes, uint32_t length);
    /// As for data(), for a block that the host passes by the address of its pointer.
    void handle(const char* name, void* const* bytes, uint32_t length);
    /// An identifier, which is a content.
    void identifier(const char* name, const void* bytes);
    /// The same, by the address of its pointer. Nothing for a null handle.
    void identifierHandle(const char* name, void* const* identifier);
    /// A text, which is a content. Nothing for null.
    void text(const char* name, const char* value);
    /// The same for a text that is valid only when the call begins.
    void textAtBegin(const char* name, const char* value);

    /// An output: a block. Ignored until the call has succeeded.
    void output(const char* name, const void* bytes, uint32_t length);
    /// An output: a number.
    void outputNumber(const char* name, uint32_t value);
    /// An output: an object identifier.
    void outputIdentifier(const char* name, void* const* identifier);

    /// Returns whether the outputs are valid.
    bool hasSucceeded() const { return succeeded_; }

    /// Returns the function's result. `describe(CallTrace&)` passes the arguments and the outputs, in the end
    /// once more. Costs one comparison if calls are not traced.
    template <typename Describe, typename Function, typename... Output>
    static uint32_t run(const char* name, const Describe& describe, const Function& function,
                        Output*... outputs) {
        if (!Trace::wants(TraceArea::kCalls, TraceLevel::kFailures)) return function();
        return runTraced(name, describe, function, outputs...);
    }

    /// For InitializePOS: writes only the entry about a success. `timer` has run since the call.
    static void writeResult(const char* name, const TraceTimer& timer) noexcept;

  private:
    // Not inlined, so that a call that is not traced saves no registers for it.
    template <typename Describe, typename Function, typename... Output>
    [[gnu::noinline]] static uint32_t runTraced(const char* name, const Describe& describe,
                                                const Function& function, Output*... outputs) {
        Trace::write(TraceArea::kCalls, TraceLevel::kSteps, [&] {
            CallTrace call(name);
            describe(call);
            return call.beginText();
        });
        const TraceTimer timer;
        const uint32_t result = function();
        const TraceLevel level = result == POS_OK ? TraceLevel::kSteps : TraceLevel::kFailures;
        Trace::write(TraceArea::kCalls, level, [&] {
            CallTrace call(name, {outputs...});
            call.hasReturned_ = true;
            call.succeeded_ = result == POS_OK;
            describe(call);
            return call.endText(timer);
        });
        return result;
    }

    std::string beginText() const;
    std::string endText(const TraceTimer& timer) const;
    bool wantsContents() const;
    bool isOverwritten(const void* place) const;
    void addContent(const char* mark, const char* name, const std::string& value);

    bool hasReturned_ = false;
    bool succeeded_ = false;
    std::string inputs_;
    std::string outputs_;
    std::string contents_;
    std::vector<const void*> outputPlaces_;
};

}  // namespace dovrel
