#include "client/POSApplicationRecord.h"

#include <gtest/gtest.h>

#include <string>

namespace dovrel {
namespace {

CPPClassID classOf(const std::string& bytes) {
    CPPByteArray array;
    array.set(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return CPPClassID(array);
}

TEST(POSApplicationRecord, HasClass_ComparesByteByByte) {
    POSApplicationRecord record;
    EXPECT_FALSE(record.hasClass(classOf("0123456789abcdef")));
    record.classes = {classOf("fedcba9876543210"), classOf(std::string("0123456789abcde\0", 16))};
    EXPECT_TRUE(record.hasClass(classOf("fedcba9876543210")));
    EXPECT_TRUE(record.hasClass(classOf(std::string("0123456789abcde\0", 16))));
    EXPECT_FALSE(record.hasClass(classOf("0123456789abcdef")));
    EXPECT_FALSE(record.hasClass(classOf("0123456789abcde")));
}

}  // namespace
}  // namespace dovrel
