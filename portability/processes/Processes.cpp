#include <ApplicationServices/Processes.h>
#include <CoreServices/MacErrors.h>
#include <unistd.h>

#include "portability/processes/ProcessTable.h"

namespace {

// Set in every high part, because serial numbers whose high part is 0 have special meanings.
constexpr UInt32 kHighPartMark = 0x80000000;

// The process id alone is not unique, because the system reuses it. The id and the start time together
// are unique.
ProcessSerialNumber serialNumber(const portability::Process& process) {
    ProcessSerialNumber number;
    number.highLongOfPSN = kHighPartMark | static_cast<UInt32>(process.startTime & ~UInt64{kHighPartMark});
    number.lowLongOfPSN = static_cast<UInt32>(process.id);
    return number;
}

bool areEqual(const ProcessSerialNumber& first, const ProcessSerialNumber& second) {
    return first.highLongOfPSN == second.highLongOfPSN && first.lowLongOfPSN == second.lowLongOfPSN;
}

}  // namespace

OSErr GetCurrentProcess(ProcessSerialNumber* pPSN) {
    return static_cast<OSErr>(GetProcessForPID(getpid(), pPSN));
}

OSStatus GetProcessPID(const ProcessSerialNumber* psn, pid_t* pid) {
    if (psn == nullptr || pid == nullptr) {
        return paramErr;
    }
    if (psn->highLongOfPSN == 0 && psn->lowLongOfPSN == kCurrentProcess) {
        *pid = getpid();
        return noErr;
    }
    const auto process = portability::findProcess(static_cast<pid_t>(psn->lowLongOfPSN));
    if (!process || !areEqual(serialNumber(*process), *psn)) {
        return procNotFound;
    }
    *pid = process->id;
    return noErr;
}

OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* psn) {
    if (psn == nullptr) {
        return paramErr;
    }
    const auto process = portability::findProcess(pid);
    if (!process) {
        return procNotFound;
    }
    *psn = serialNumber(*process);
    return noErr;
}
