// PreparedProgram: a program and everything that it receives, prepared before its process is created.
// Private to the layer.
#pragma once

#include <string>
#include <vector>

#include "portability/processes/NewProcess.h"

namespace portability {

/// In a list of descriptors: use /dev/null.
constexpr int kNullDevice = -1;

class PreparedProgram {
  public:
    /// Prepares the program at the path `program`. The first of the arguments is the program's name, the
    /// environment has entries "NAME=value", and the descriptors become 0, 1, 2 … in the order of the list
    /// (at most kMostDescriptors). All four must exist as long as this object.
    PreparedProgram(const std::string& program, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment, const std::vector<int>& descriptors);
    PreparedProgram(const PreparedProgram&) = delete;
    PreparedProgram& operator=(const PreparedProgram&) = delete;

    static constexpr std::size_t kMostDescriptors = 8;

    /// Makes the program run in the folder "/" with umask 022. Otherwise it runs with those of this process.
    void leaveFolderAndMask() { plan_.leavesFolderAndMask = true; }

    /// Removes this process's limits of file sizes, processor time and memory from the program, as far as the
    /// system permits: an ordinary user's process can only raise its soft limits to its hard ones.
    void leaveLimits() { plan_.leavesLimits = true; }

    /// Creates a child of the calling process and starts the program in it. To be called in a process that
    /// makeProcess has created, with all signals blocked. The program runs in a new session, with all signals
    /// unblocked and at their default actions, and has only the descriptors of the list. Waits until it runs
    /// or its start has failed. Returns the child's process ID, or -1 if there is no child.
    DOVREL_IN_NEW_PROCESS pid_t start();

    /// Returns the errno value of the failed start, or 0 if the start has not failed.
    int failure() const { return plan_.failure; }

  private:
    // Everything that the child reads. Plain pointers, so that the child runs no code of the C++ library.
    struct Plan {
        const char* program;
        char* const* arguments;
        char* const* environment;
        const int* descriptors;
        int descriptorCount;
        bool leavesFolderAndMask;
        bool leavesLimits;
        int failure;
    };

    DOVREL_IN_NEW_PROCESS static int run(void* plan);
    DOVREL_IN_NEW_PROCESS static bool placeDescriptors(const Plan& plan);

    const std::vector<char*> arguments_;
    const std::vector<char*> environment_;
    const ProcessStack stack_;
    void* const stackTop_;
    Plan plan_;
};

}  // namespace portability
