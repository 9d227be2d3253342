#include "InterProcessCommunication/BSDProcessList.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace dovrel {

namespace {

int queryAllProcesses(void* block, size_t* length) {
    int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_ALL};
    return sysctl(name, 3, block, length, nullptr, 0) == -1 ? errno : 0;
}

// Makes one attempt to read the list. The second query returns ENOMEM if the list has grown since the first.
// Only then is another attempt useful, so `*grew` is set; a failed malloc returns ENOMEM without setting it.
int readProcessList(kinfo_proc** procList, size_t* length, bool* grew) {
    int err = queryAllProcesses(nullptr, length);
    if (err != 0) return err;
    // Owned until it is returned, because the query throws std::bad_alloc where it is not a system call.
    std::unique_ptr<void, decltype(&std::free)> block(std::malloc(*length), &std::free);
    if (block == nullptr) return ENOMEM;
    err = queryAllProcesses(block.get(), length);
    if (err != 0) {
        *grew = err == ENOMEM;
        return err;
    }
    *procList = static_cast<kinfo_proc*>(block.release());
    return 0;
}

}  // namespace

int GetBSDProcessList(kinfo_proc** procList, size_t* procCount) {
    if (procList == nullptr || *procList != nullptr || procCount == nullptr) return 1;
    *procCount = 0;

    size_t length = 0;
    bool grew = false;
    int err = 0;
    do {
        grew = false;
        err = readProcessList(procList, &length, &grew);
    } while (grew);

    if (err == 0) *procCount = length / sizeof(kinfo_proc);
    assertListAgreesWithError(err, *procList);
    return err;
}

void assertListAgreesWithError(int err, const kinfo_proc* procList) {
    if ((err == 0) == (procList != nullptr)) return;
    std::fprintf(stderr, "Assertion failed: (%s), function %s, file %s, line %d.\n",
                 "(err == 0) == (*procList != NULL)", "GetBSDProcessList", "Client_to_POS_Communicator", 134);
    std::abort();
}

}  // namespace dovrel
