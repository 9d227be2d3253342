#include <sys/sysctl.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <vector>

#include "portability/processes/ProcessTable.h"

namespace {

// Number of entries added to the reported size, as the kernel does, for processes that start before the
// next call.
constexpr std::size_t kSpareEntries = 5;

// The length of the last list that did not fit. Where /proc is only imitated, as in some containers, its
// links can be fewer than the processes. A caller that asks again must then get another size, or it would ask
// for ever.
std::atomic<std::size_t> lastLengthThatDidNotFit{0};

char platformState(char state) {
    switch (state) {
        case 'R':
            return SRUN;
        case 'T':
        case 't':
            return SSTOP;
        default:
            return SSLEEP;
    }
}

kinfo_proc record(const portability::Process& process) {
    kinfo_proc entry;
    std::memset(&entry, 0, sizeof entry);
    entry.kp_proc.p_stat = platformState(process.state);
    entry.kp_proc.p_pid = process.id;
    process.name.copy(entry.kp_proc.p_comm, MAXCOMLEN);
    entry.kp_eproc.e_ucred.cr_uid = process.user;
    entry.kp_eproc.e_ppid = process.parent;
    entry.kp_eproc.e_pgid = process.group;
    return entry;
}

int fail(int error) {
    errno = error;
    return -1;
}

int copyProcesses(void* buffer, std::size_t* size) {
    const std::vector<portability::Process> processes = portability::listProcesses();
    const std::size_t fitting = std::min(*size / sizeof(kinfo_proc), processes.size());
    // Copied bytewise, because the caller's buffer may not be aligned for the structures.
    char* place = static_cast<char*>(buffer);
    for (std::size_t index = 0; index < fitting; ++index, place += sizeof(kinfo_proc)) {
        const kinfo_proc entry = record(processes[index]);
        std::memcpy(place, &entry, sizeof entry);
    }
    if (fitting < processes.size()) {
        lastLengthThatDidNotFit = processes.size();
        *size = 0;
        return fail(ENOMEM);
    }
    *size = fitting * sizeof(kinfo_proc);
    return 0;
}

}  // namespace

int sysctl(int* name, unsigned int namelen, void* oldp, std::size_t* oldlenp, void* newp,
           std::size_t newlen) {
    if (name == nullptr || namelen < 2) {
        return fail(EINVAL);
    }
    if (name[0] != CTL_KERN || name[1] != KERN_PROC) {
        return fail(ENOENT);
    }
    const bool isWholeList = (namelen == 3 || namelen == 4) && name[2] == KERN_PROC_ALL;
    if (!isWholeList) {
        return fail(EINVAL);
    }
    if (newp != nullptr || newlen != 0) {
        return fail(EPERM);
    }
    if (oldlenp == nullptr) {
        return oldp == nullptr ? 0 : fail(EFAULT);
    }
    if (oldp == nullptr) {
        const std::size_t count = std::max(portability::countProcesses(), lastLengthThatDidNotFit.load());
        *oldlenp = (count + kSpareEntries) * sizeof(kinfo_proc);
        return 0;
    }
    return copyProcesses(oldp, oldlenp);
}
