#include "platform/trace/Trace.h"

#include <unistd.h>

#include <new>

#include "platform/files/FileWriting.h"
#include "platform/files/PrivateFile.h"
#include "platform/time/Timestamp.h"
#include "platform/trace/TraceText.h"

namespace dovrel {

namespace {

int openTraceFile(const std::string& path) {
    const int descriptor = openPrivateFile(path);
    return descriptor >= 0 ? descriptor : STDERR_FILENO;
}

}  // namespace

const Trace* Trace::running = nullptr;

Trace::Trace(const std::string& setting)
    : setting_(setting), descriptor_(setting_.file.empty() ? STDERR_FILENO : openTraceFile(setting_.file)) {
    running = this;
    try {
        if (!setting_.problems.empty()) writeEntry("not understood: " + traceValueText(setting_.problems));
    } catch (const std::bad_alloc&) {
        // The entry is lost, as every entry for which there is no memory. The trace itself has begun.
    }
}

Trace::~Trace() {
    if (running == this) running = nullptr;
    if (descriptor_ != STDERR_FILENO) close(descriptor_);
}

void Trace::writeEntry(const std::string& text) const {
    const std::string entry = (setting_.timeOfDay ? timestampText() + " " : "") + "dovrel " +
                              std::to_string(getpid()) + " " + timer_.text() + " " + traceEntryText(text) +
                              "\n";
    appendAtOnce(descriptor_, entry.data(), entry.size());
}

}  // namespace dovrel
