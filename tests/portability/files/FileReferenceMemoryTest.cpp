// If creating a reference fails for lack of memory, references that are created later must still be correct.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "FileManager.h"
#include "tests/support/HeapWatch.h"
#include "tests/support/TemporaryFolder.h"

namespace {

TEST(FileReferenceMemory, RequestForMemoryThatFails_LeavesTheNextReferencesRight) {
    const dovrel::test::TemporaryFolder folder;
    int files = 0;
    std::string path;
    // A new path each time, because a known path needs no new entry.
    const auto makeReference = [&] {
        path = folder.path("a file with a name that is too long for a short text " + std::to_string(++files));
    };
    size_t nth = 0;
    for (bool refused = true; refused;) {
        ASSERT_LT(++nth, 100u);
        makeReference();
        folder.write(path.substr(folder.path().size() + 1), "x");
        FSRef ref = {};
        {
            dovrel::test::HeapWatch watch;
            watch.refuse(nth, dovrel::test::HeapWatch::Refusal::kOnce);
            OSStatus status = memFullErr;
            try {
                status = makeRef(path, &ref);
            } catch (const std::bad_alloc&) {
            }
            refused = watch.hasRefused();
            ASSERT_EQ(status == noErr, !refused) << nth;
        }
        // Tries the same path again, and then another new path.
        EXPECT_EQ(toPath(makeRef(path)), path) << nth;
        makeReference();
        folder.write(path.substr(folder.path().size() + 1), "x");
        EXPECT_EQ(toPath(makeRef(path)), path) << nth;
    }
    EXPECT_GT(nth, 2u);
}

}  // namespace
