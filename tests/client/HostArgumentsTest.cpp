#include "client/HostArguments.h"

#include <cstdlib>
#include <cstring>
#include <functional>

#include "client/OperationResult.h"
#include "tests/client/SessionTest.h"
#include "tests/support/library/Bytes.h"

namespace dovrel {
namespace {

using test::Identifier;
using test::textOf;

class HostArgumentsTest : public test::SystemRootTest {
  protected:
    /// Returns true if the work fails with the null-pointer text and without a specific class.
    static bool failsForNull(const std::function<void()>& work) {
        const OperationResult result = runCatching([&] {
            work();
            return POSOutcome::kDone;
        });
        return result.failure && result.failure->getTypeCode() == 0 &&
               std::strcmp(result.failure->getMessage(), kNullPointer) == 0;
    }

    Identifier name_{"an identifier"};
    void* handle_ = name_.bytes();
    void* null_ = nullptr;
    const std::string sixteen_{"an identifier\0\0\0", 16};
};

TEST_F(HostArgumentsTest, RequireNonNull_ThrowsForNullOnly) {
    EXPECT_TRUE(failsForNull([] { requireNonNull(nullptr); }));
    EXPECT_FALSE(failsForNull([] { requireNonNull(""); }));
}

TEST_F(HostArgumentsTest, ViewBytes_AllowsNullWithoutBytes) {
    EXPECT_TRUE(failsForNull([] { viewBytes(nullptr, 1); }));
    EXPECT_EQ(viewBytes(nullptr, 0).data, nullptr);
    const char bytes[] = "x";
    EXPECT_EQ(static_cast<const void*>(viewBytes(bytes, 1).data), bytes);
    EXPECT_EQ(viewBytes(bytes, 1).length, 1u);
}

TEST_F(HostArgumentsTest, ViewHandle_FollowsTheHandle) {
    EXPECT_EQ(static_cast<const void*>(viewHandle(&handle_, 5).data), handle_);
    EXPECT_EQ(viewHandle(&handle_, 5).length, 5u);
    EXPECT_EQ(viewHandle(&null_, 0).data, nullptr);
    EXPECT_TRUE(failsForNull([&] { viewHandle(nullptr, 0); }));
    EXPECT_TRUE(failsForNull([&] { viewHandle(&null_, 1); }));
}

TEST_F(HostArgumentsTest, CopyIdentifier_CopiesSixteenBytes) {
    EXPECT_EQ(textOf(copyIdentifier<CPPClassID>(&handle_)), sixteen_);
    EXPECT_TRUE(failsForNull([&] { copyIdentifier<CPPClassID>(&null_); }));
    EXPECT_TRUE(failsForNull([&] { copyIdentifier<CPPClassID>(nullptr); }));
}

TEST_F(HostArgumentsTest, CopyClassList_CopiesThemInOrder) {
    Identifier second("second");
    void* list[] = {handle_, second.bytes()};
    const auto classes = copyClassList(list, 2);
    ASSERT_EQ(classes.size(), 2u);
    EXPECT_EQ(textOf(classes[0]), sixteen_);
    EXPECT_EQ(textOf(classes[1]), std::string("second\0\0\0\0\0\0\0\0\0\0", 16));
}

TEST_F(HostArgumentsTest, CopyClassList_NullIsLegalWithoutClassesOnly) {
    void* gap[] = {handle_, nullptr};
    EXPECT_TRUE(copyClassList(nullptr, 0).empty());
    EXPECT_TRUE(failsForNull([] { copyClassList(nullptr, 1); }));
    EXPECT_TRUE(failsForNull([&] { copyClassList(gap, 2); }));
}

TEST_F(HostArgumentsTest, MakeMethodCall_CopiesTheIdentifiersAndRefersToTheRest) {
    const char name[] = "add";
    const uint8_t parameters[] = {1, 2};
    Identifier executer("executer");
    void* executerHandle = executer.bytes();
    const MethodCall call = makeMethodCall(&executerHandle, &handle_, name, parameters, 2);
    EXPECT_EQ(textOf(call.object), sixteen_);
    ASSERT_TRUE(call.executer.has_value());
    EXPECT_EQ(textOf(*call.executer), std::string("executer\0\0\0\0\0\0\0\0", 16));
    EXPECT_EQ(call.name, name);
    EXPECT_EQ(call.parameters.data, parameters);
    EXPECT_EQ(call.parameters.length, 2u);
}

TEST_F(HostArgumentsTest, MakeMethodCall_NamesAnExecuterOnlyByHandleAndPointer) {
    EXPECT_TRUE(makeMethodCall(&handle_, &handle_, "add", nullptr, 0).executer.has_value());
    EXPECT_FALSE(makeMethodCall(&null_, &handle_, "add", nullptr, 0).executer.has_value());
    EXPECT_FALSE(makeMethodCall(nullptr, &handle_, "add", nullptr, 0).executer.has_value());
}

TEST_F(HostArgumentsTest, MakeMethodCall_NeedsObjectNameAndTheParametersThatItsLengthNames) {
    EXPECT_TRUE(failsForNull([&] { makeMethodCall(nullptr, nullptr, "add", nullptr, 0); }));
    EXPECT_TRUE(failsForNull([&] { makeMethodCall(nullptr, &null_, "add", nullptr, 0); }));
    EXPECT_TRUE(failsForNull([&] { makeMethodCall(nullptr, &handle_, nullptr, nullptr, 0); }));
    EXPECT_TRUE(failsForNull([&] { makeMethodCall(nullptr, &handle_, "add", nullptr, 1); }));
}

TEST_F(HostArgumentsTest, MakeCommand_RefersToCommandAndArgument) {
    char argument[] = "all";
    void* argumentHandle = argument;
    const Command command = makeCommand(&handle_, 16, &argumentHandle, 3);
    EXPECT_EQ(static_cast<const void*>(command.bytes.data), handle_);
    EXPECT_EQ(command.bytes.length, 16u);
    EXPECT_EQ(static_cast<const void*>(command.argument.data), argument);
    EXPECT_EQ(command.argument.length, 3u);
}

TEST_F(HostArgumentsTest, MakeCommand_NeedsBothHandlesAndTheBytesThatTheirLengthsName) {
    EXPECT_FALSE(failsForNull([&] { makeCommand(&null_, 0, &null_, 0); }));
    EXPECT_TRUE(failsForNull([&] { makeCommand(nullptr, 0, &handle_, 1); }));
    EXPECT_TRUE(failsForNull([&] { makeCommand(&null_, 1, &handle_, 1); }));
    EXPECT_TRUE(failsForNull([&] { makeCommand(&handle_, 1, nullptr, 0); }));
    EXPECT_TRUE(failsForNull([&] { makeCommand(&handle_, 1, &null_, 1); }));
}

TEST_F(HostArgumentsTest, AllocateObjectId_IsABlockFromMallocWithRoomForAnIdentifier) {
    void* const block = allocateObjectId().release();
    std::memcpy(block, name_.bytes(), 16);
    EXPECT_EQ(std::memcmp(block, sixteen_.data(), 16), 0);
    std::free(block);
}

ByteBlock blockOf(const char* text) {
    ByteBlock block{std::make_unique<uint8_t[]>(std::strlen(text)), static_cast<uint32_t>(std::strlen(text))};
    std::memcpy(block.data.get(), text, block.length);
    return block;
}

TEST_F(HostArgumentsTest, GiveToHost_StoresBlockAndLength) {
    uint8_t* block = nullptr;
    uint32_t length = 0;
    giveToHost(blockOf("abc"), &block, &length);
    EXPECT_EQ(std::string(block, block + length), "abc");
    delete[] block;
    giveToHost(ByteBlock(), &block, &length);
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(length, 0u);
}

TEST_F(HostArgumentsTest, GiveToHost_OfASignedLength_TakesOnlyWhatHasAPlaceInIt) {
    uint8_t* block = nullptr;
    int32_t length = 0;
    giveToHost(blockOf("abc"), &block, &length);
    EXPECT_EQ(length, 3);
    delete[] block;
    // The blocks are shorter than the lengths say, because nothing reads them.
    giveToHost({blockOf("abc").data, 0x7FFFFFFF}, &block, &length);
    EXPECT_EQ(length, 0x7FFFFFFF);
    delete[] block;
    block = nullptr;
    for (uint32_t tooLong : {0x80000000u, 0xFFFFFFFFu}) {
        const OperationResult result = runCatching([&] {
            giveToHost({blockOf("abc").data, tooLong}, &block, &length);
            return POSOutcome::kDone;
        });
        ASSERT_TRUE(result.failure) << tooLong;
        EXPECT_EQ(result.failure->getTypeCode(), 0u);
        EXPECT_STREQ(result.failure->getMessage(), "Too much.");
        EXPECT_EQ(block, nullptr);
        EXPECT_EQ(length, 0x7FFFFFFF);
    }
}

}  // namespace
}  // namespace dovrel
