#include "client/exceptions/StructuredDataExceptions.h"

#include <gtest/gtest.h>

#include "client/exceptions/POSException.h"
#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

template <class Exception>
void expectDirectMember(uint32_t typeCode) {
    SCOPED_TRACE(typeCode);
    const Exception failure("1");
    EXPECT_EQ(failure.getTypeCode(), typeCode);
    EXPECT_STREQ(failure.getMessage(), "1");
    EXPECT_STREQ(failure.getDetail(), "???");
    EXPECT_EQ(failure.getCode(), 0);
    EXPECT_EQ(test::VirtualSlots<Exception>::count(), 3u);
    static_assert(std::is_base_of_v<CPPException, Exception> && !std::is_base_of_v<POSException, Exception>);
}

TEST(StructuredDataExceptions, TypeCodes_AreTwoToFive) {
    expectDirectMember<StructuredReaderNotInitializedException>(2);
    expectDirectMember<PartNotFoundException>(3);
    expectDirectMember<StructuredWriterNotInitializedException>(4);
    expectDirectMember<StructuredWriteFailedException>(5);
}

}  // namespace
}  // namespace dovrel
