#include "tests/platform/RecordedServices.h"

#include <ApplicationServices/ApplicationServices.h>

using dovrel::test::services;

namespace dovrel::test {

RecordedServices services;

}  // namespace dovrel::test

namespace {

std::string text(const void* id) {
    return std::to_string(reinterpret_cast<uintptr_t>(id));
}

template <class Id>
OSStatus create(const std::string& call, Id* id) {
    services.calls.push_back(call);
    if (services.creation == noErr) *id = reinterpret_cast<Id>(services.createdId);
    return services.creation;
}

OSStatus use(const std::string& call) {
    services.calls.push_back(call);
    return services.use;
}

}  // namespace

Boolean _MPIsFullyInitialized() {
    return services.areReady;
}

OSStatus MPCreateCriticalRegion(MPCriticalRegionID* region) {
    return create("create region", region);
}

OSStatus MPDeleteCriticalRegion(MPCriticalRegionID region) {
    return use("delete region " + text(region));
}

OSStatus MPEnterCriticalRegion(MPCriticalRegionID region, Duration timeout) {
    return use("enter region " + text(region) + " for " + std::to_string(timeout));
}

OSStatus MPExitCriticalRegion(MPCriticalRegionID region) {
    return use("exit region " + text(region));
}

OSStatus MPCreateSemaphore(MPSemaphoreCount maximum, MPSemaphoreCount initial, MPSemaphoreID* semaphore) {
    return create("create semaphore " + std::to_string(maximum) + " " + std::to_string(initial), semaphore);
}

OSStatus MPDeleteSemaphore(MPSemaphoreID semaphore) {
    return use("delete semaphore " + text(semaphore));
}

OSStatus MPWaitOnSemaphore(MPSemaphoreID semaphore, Duration timeout) {
    return use("wait on semaphore " + text(semaphore) + " for " + std::to_string(timeout));
}

OSStatus MPSignalSemaphore(MPSemaphoreID semaphore) {
    return use("signal semaphore " + text(semaphore));
}

OSStatus MPCreateEvent(MPEventID* event) {
    return create("create event", event);
}

OSStatus MPDeleteEvent(MPEventID event) {
    return use("delete event " + text(event));
}

OSStatus MPSetEvent(MPEventID event, MPEventFlags) {
    return use("set event " + text(event));
}

OSStatus MPWaitForEvent(MPEventID event, MPEventFlags* flags, Duration timeout) {
    return use("wait for event " + text(event) + " with flags " + std::to_string(*flags) + " for " +
               std::to_string(timeout));
}

OSStatus MPCreateTask(TaskProc, void*, ByteCount stackSize, MPQueueID queue, void* first, void* second,
                      MPTaskOptions options, MPTaskID* task) {
    services.calls.push_back("create task with stack " + std::to_string(stackSize) + ", queue " +
                             text(queue) + ", parameters " + text(first) + " " + text(second) + ", options " +
                             std::to_string(options));
    *task = reinterpret_cast<MPTaskID>(services.createdId);
    return services.taskCreation;
}

Boolean MPTaskIsPreemptive(MPTaskID) {
    return false;
}

OSErr GetCurrentProcess(ProcessSerialNumber* process) {
    *process = {0, kCurrentProcess};
    return noErr;
}

OSStatus GetProcessPID(const ProcessSerialNumber*, pid_t* id) {
    if (services.processLookup == noErr) *id = 4711;
    return services.processLookup;
}

OSStatus GetProcessForPID(pid_t, ProcessSerialNumber*) {
    return procNotFound;
}

void Microseconds(UnsignedWide* now) {
    now->hi = static_cast<UInt32>(services.microseconds >> 32);
    now->lo = static_cast<UInt32>(services.microseconds);
}
