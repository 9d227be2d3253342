#include "platform/tasks/BackgroundTask.h"

#include <exception>
#include <memory>

#include "platform/SystemException.h"
#include "platform/synchronization/SynchronizationFactory.h"
#include "platform/tasks/Tasks.h"

namespace dovrel {

namespace {

// Shared by the two threads. The waiting thread owns it, and destroys it as soon as the event is signalled.
struct WorkRecord {
    const std::function<void()>& work;
    const bool ignoresFailures;
    std::unique_ptr<SynchronizationEvent> done;
    std::exception_ptr thrown;  // keeps the type that was thrown, for the caller's catch clauses
};

OSStatus runRecord(void* parameter) {
    WorkRecord& record = *static_cast<WorkRecord*>(parameter);
    try {
        record.work();
    } catch (CPPException* caught) {
        if (record.ignoresFailures) {
            std::unique_ptr<CPPException> failure(caught);
        } else {
            record.thrown = std::current_exception();
        }
    } catch (...) {
        // A task's entry function must not throw.
        record.thrown = std::current_exception();
    }
    record.done->signal();
    return noErr;
}

void runAndWait(const std::function<void()>& work, bool ignoresFailures) {
    WorkRecord record{work, ignoresFailures, createSynchronizationEvent(true, false), nullptr};
    const OSStatus status = startTask(runRecord, &record);
    if (status != noErr) {
        // An event that is never signalled is never deleted.
        record.done->signal();
        throw new SystemException("runInBackground", static_cast<int32_t>(status));
    }
    record.done->wait(kWaitForever);
    if (record.thrown) std::rethrow_exception(record.thrown);
}

}  // namespace

void runInBackground(const std::function<void()>& work) {
    runAndWait(work, false);
}

void runInBackgroundIgnoringFailures(const std::function<void()>& work) {
    runAndWait(work, true);
}

}  // namespace dovrel
