#include "platform/tasks/Tasks.h"

#include <ApplicationServices/ApplicationServices.h>
#include <unistd.h>

#include <cstdio>

namespace dovrel {

OSStatus startTask(TaskProc entry, void* parameter) {
    MPTaskID task = kInvalidID;
    const OSStatus status = MPCreateTask(entry, parameter, 0, kInvalidID, nullptr, nullptr, 0, &task);
    if (status != noErr) {
        // Does not use std::cout: the host may have changed its base, width or locale.
        std::printf("MPCreateTask() returned error: %d\n", static_cast<int>(status));
        std::fflush(stdout);
    }
    return status;
}

void sleepMilliseconds(uint32_t milliseconds) {
    constexpr uint32_t kMicrosecondsOfMillisecond = 1000;
    // Sleeps in steps, because usleep() need not accept a million microseconds or more.
    constexpr uint32_t kLongestStep = 999;
    while (milliseconds > kLongestStep) {
        usleep(kLongestStep * kMicrosecondsOfMillisecond);
        milliseconds -= kLongestStep;
    }
    usleep(milliseconds * kMicrosecondsOfMillisecond);
}

pid_t currentProcessId() {
    ProcessSerialNumber self = {0, 0};
    pid_t id = 0;
    if (GetCurrentProcess(&self) != noErr || GetProcessPID(&self, &id) != noErr) return 0;
    return id;
}

}  // namespace dovrel
