// Stands in for the services of the platform that synchronization objects and tasks are made of: notes every
// call and answers what the test wants.
#pragma once

#include <CoreServices/CoreServices.h>

#include <string>
#include <vector>

namespace dovrel::test {

struct RecordedServices {
    bool areReady = true;
    OSStatus creation = noErr;  // what the calls that create regions, semaphores and events answer
    OSStatus taskCreation = noErr;
    uintptr_t createdId = 0x100;  // the identifier that is handed out on success
    OSStatus use = noErr;         // what all others answer
    OSStatus processLookup = noErr;
    std::vector<std::string> calls;
};

/// The one that all calls go to.
extern RecordedServices services;

}  // namespace dovrel::test
