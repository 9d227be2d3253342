#include "client/exceptions/POSClientException.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "client/exceptions/CPPException.h"
#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

TEST(POSClientException, Text_IsACopy) {
    char text[] = "lost";
    const POSClientException failure(text);
    text[0] = 'X';
    EXPECT_STREQ(failure.getText(), "lost");
}

TEST(POSClientException, WithoutText_HasNull) {
    EXPECT_EQ(POSClientException().getText(), nullptr);
    EXPECT_EQ(POSClientException("").getText(), nullptr);
}

TEST(POSClientException, IsOutsideTheFamily) {
    EXPECT_FALSE((std::is_base_of_v<CPPException, POSClientException>));
}

TEST(POSClientException, VirtualOperations_AreItsDestructors) {
    EXPECT_EQ(test::VirtualSlots<POSClientException>::count(), 2u);
}

}  // namespace
}  // namespace dovrel
