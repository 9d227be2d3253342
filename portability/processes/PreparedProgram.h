// A program with all that it gets, prepared before the process exists that will run it. Private to the layer.
#pragma once

#include <string>
#include <vector>

#include "portability/processes/NewProcess.h"

namespace portability {

/// Stands in a list of descriptors for one of /dev/null.
constexpr int kNullDevice = -1;

class PreparedProgram {
  public:
    /// The program at the path `program`, with its arguments from the program's name on, its environment
    /// (entries "NAME=value") and its descriptors, which appear as 0, 1, 2 … in the order of the list (at
    /// most kMostDescriptors). All four must outlive this object.
    PreparedProgram(const std::string& program, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment, const std::vector<int>& descriptors);
    PreparedProgram(const PreparedProgram&) = delete;
    PreparedProgram& operator=(const PreparedProgram&) = delete;

    static constexpr std::size_t kMostDescriptors = 8;

    /// Lets the program run in the folder "/" and with umask 022, instead of those of this process.
    void leaveFolderAndMask() { plan_.leavesFolderAndMask = true; }

    /// Makes a child of the calling process and starts the program in it. For a process that makeProcess has
    /// made, with every signal blocked. The program runs in a session of its own, with no signal blocked or
    /// ignored, and has no descriptor but those of the list. Waits until it runs or its start has failed.
    /// Returns the child's id, -1 if there is none.
    DOVREL_IN_NEW_PROCESS pid_t start();

    /// Why the start has failed: an errno value, 0 if it has not.
    int failure() const { return plan_.failure; }

  private:
    // All that the child reads. Plain pointers: reading them takes no code of the library's.
    struct Plan {
        const char* program;
        char* const* arguments;
        char* const* environment;
        const int* descriptors;
        int descriptorCount;
        bool leavesFolderAndMask;
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
