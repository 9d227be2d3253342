// Replaces the platform services of synchronization objects, tasks and time. It records the calls of objects and
// tasks, and returns the results that a test has set.
#pragma once

#include <CoreServices/CoreServices.h>

#include <string>
#include <vector>

namespace dovrel::test {

struct RecordedServices {
    bool areReady = true;
    OSStatus creation = noErr;  // result of the calls that create regions, semaphores and events
    OSStatus taskCreation = noErr;
    uintptr_t createdId = 0x100;  // the identifier that is returned on success
    OSStatus use = noErr;         // result of all other calls
    OSStatus processLookup = noErr;
    uint64_t microseconds = 0;  // the time since the system started
    std::vector<std::string> calls;
};

/// The record of all calls.
extern RecordedServices services;

}  // namespace dovrel::test
