#include "InterProcessCommunication/BSDProcessList.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

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
    void* const block = std::malloc(*length);
    if (block == nullptr) return ENOMEM;
    err = queryAllProcesses(block, length);
    if (err != 0) {
        std::free(block);
        *grew = err == ENOMEM;
        return err;
    }
    *procList = static_cast<kinfo_proc*>(block);
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
