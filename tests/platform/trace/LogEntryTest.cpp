#include "platform/trace/LogEntry.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace dovrel {
namespace {

TEST(LogEntry, Accessors_ReturnTheConstructorsArguments) {
    const LogEntry entry(-1234567890123456789, "a message");
    EXPECT_EQ(entry.getTimeStamp(), -1234567890123456789);
    EXPECT_EQ(entry.getMessage(), "a message");
    EXPECT_EQ(&entry.getMessage(), &entry.getMessage()) << "the text itself, not a copy";
}

TEST(LogEntry, DerivedEntry_IsDeletedThroughTheBase) {
    struct Derived : LogEntry {
        explicit Derived(bool& deleted) : LogEntry(0, ""), deleted_(deleted) {}
        ~Derived() override { deleted_ = true; }
        bool& deleted_;
    };
    bool deleted = false;
    std::unique_ptr<LogEntry>(new Derived(deleted)).reset();
    EXPECT_TRUE(deleted);
}

}  // namespace
}  // namespace dovrel
