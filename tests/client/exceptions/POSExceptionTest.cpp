#include "client/exceptions/POSException.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

// The numbers are shared with the server. They are repeated here on purpose.
template <class Exception>
void expectServerFailure(uint32_t typeCode) {
    SCOPED_TRACE(typeCode);
    const std::unique_ptr<CPPException> failure(new Exception("from the server"));
    EXPECT_EQ(failure->getTypeCode(), typeCode);
    EXPECT_STREQ(failure->getMessage(), "from the server");
    EXPECT_STREQ(failure->getDetail(), "???");
    EXPECT_EQ(failure->getCode(), 0);
    EXPECT_EQ(Exception("with a code", 9).getCode(), 9);
    static_assert(std::is_base_of_v<CPPException, Exception>);
    static_assert(sizeof(Exception) == sizeof(CPPException), "adds nothing but its type code");
}

TEST(POSException, TypeCodesOfTheFamily_AreThoseSharedWithTheServer) {
    expectServerFailure<POSException>(23);
    expectServerFailure<POSClassNotFoundException>(24);
    expectServerFailure<POSObjectNotFoundException>(25);
    expectServerFailure<POSObjectInstantiationException>(26);
    expectServerFailure<POSMethodNotFoundException>(27);
    expectServerFailure<POSMethodExecutionException>(28);
    expectServerFailure<POSParameterFormatException>(30);
    expectServerFailure<POSRegistrationException>(32);
    expectServerFailure<POSClassPackageNotProcessedException>(33);
    expectServerFailure<POSApplicationNotRegisteredException>(34);
    expectServerFailure<POSLibraryNotFoundException>(36);
    expectServerFailure<POSClassPackageNotFoundException>(43);
    expectServerFailure<POSExecuterReturnedErrorCodeException>(145);
    expectServerFailure<POSCommandNotExecutedException>(146);
}

TEST(POSException, Subclass_IsCaughtAsPOSExceptionAndAsCPPException) {
    try {
        throw new POSRegistrationException("refused");
    } catch (POSException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        EXPECT_EQ(failure->getTypeCode(), 32u);
    }
    try {
        throw new POSRegistrationException("refused");
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        EXPECT_EQ(failure->getTypeCode(), 32u);
    }
}

TEST(POSException, VirtualOperations_AreThoseOfTheRoot) {
    EXPECT_EQ(test::VirtualSlots<POSException>::count(), 3u);
    EXPECT_EQ(test::VirtualSlots<POSCommandNotExecutedException>::count(), 3u);
}

}  // namespace
}  // namespace dovrel
