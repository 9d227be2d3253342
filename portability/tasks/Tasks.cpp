#include <CoreServices/Multiprocessing.h>
#include <pthread.h>

#include <algorithm>
#include <memory>
#include <new>

#include "portability/posix/MainThread.h"
#include "portability/tasks/HandlePool.h"

namespace {

// The minimum size of a task's stack, in bytes, even if the caller requests less. The system's libraries need
// space on the stack. The thread-local data of all libraries, which may be large, is in the same memory.
constexpr ByteCount kSmallestStack = 2 * 1024 * 1024;
constexpr ByteCount kStackGranularity = 64 * 1024;

constexpr MPTaskOptions kSupportedOptions =
    kMPCreateTaskTakesAllExceptionsMask | kMPCreateTaskNotDebuggableMask;

struct Task {};

// Never destroyed, because tasks may still be running while the process exits.
portability::HandlePool<Task>& tasks() {
    static auto& pool = *new portability::HandlePool<Task>;
    return pool;
}

struct TaskStart {
    TaskProc entryPoint;
    void* parameter;
    uintptr_t id;
};

void endTask(uintptr_t id) {
    if (auto task = tasks().find(id)) tasks().remove(std::move(task));
}

void* runTask(void* argument) {
    const std::unique_ptr<TaskStart> start(static_cast<TaskStart*>(argument));
    start->entryPoint(start->parameter);
    endTask(start->id);
    return nullptr;
}

bool startThread(ByteCount stackSize, std::unique_ptr<TaskStart> start) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) return false;
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    if (stackSize != 0) {
        const ByteCount whole = std::max(stackSize, kSmallestStack) / kStackGranularity * kStackGranularity;
        pthread_attr_setstacksize(&attributes, whole);
    }
    pthread_t thread;
    const bool started = pthread_create(&thread, &attributes, runTask, start.get()) == 0;
    if (started) static_cast<void>(start.release());
    pthread_attr_destroy(&attributes);
    return started;
}

}  // namespace

OSStatus MPCreateTask(TaskProc entryPoint, void* parameter, ByteCount stackSize, MPQueueID notifyQueue,
                      void* /*terminationParameter1*/, void* /*terminationParameter2*/, MPTaskOptions options,
                      MPTaskID* task) {
    if (entryPoint == nullptr) return paramErr;
    if (notifyQueue != kInvalidID) return kMPInvalidIDErr;
    if ((options & ~kSupportedOptions) != 0) return kMPInsufficientResourcesErr;
    const uintptr_t id = tasks().create({});
    if (id == 0) return kMPInsufficientResourcesErr;
    std::unique_ptr<TaskStart> start(new (std::nothrow) TaskStart{entryPoint, parameter, id});
    if (start == nullptr || !startThread(stackSize, std::move(start))) {
        endTask(id);
        return kMPInsufficientResourcesErr;
    }
    if (task != nullptr) *task = reinterpret_cast<MPTaskID>(id);
    return noErr;
}

Boolean MPTaskIsPreemptive(MPTaskID task) {
    if (task == kInvalidID) return !portability::isMainThread();
    return static_cast<bool>(tasks().find(reinterpret_cast<uintptr_t>(task)));
}

Boolean _MPIsFullyInitialized() {
    return true;
}
