#include "client/HostArguments.h"

#include <cstring>
#include <functional>

#include "client/Attempt.h"
#include "tests/client/SessionTest.h"

namespace dovrel {
namespace {

using test::Identifier;

class HostArgumentsTest : public test::SystemRootTest {
  protected:
    /// Returns true if the work fails with the null-pointer text and without a specific class.
    static bool failsForNull(const std::function<void()>& work) {
        const Attempt result = attempt([&] {
            work();
            return true;
        });
        return result.failure && result.failure->getTypeCode() == 0 &&
               std::strcmp(result.failure->getMessage(), kNullPointer) == 0;
    }
};

TEST_F(HostArgumentsTest, RequireNonNull_ThrowsForNullOnly) {
    EXPECT_TRUE(failsForNull([] { requireNonNull(nullptr); }));
    EXPECT_FALSE(failsForNull([] { requireNonNull(""); }));
}

TEST_F(HostArgumentsTest, RequireBytes_AllowsNullWithoutBytes) {
    EXPECT_TRUE(failsForNull([] { requireBytes(nullptr, 1); }));
    EXPECT_FALSE(failsForNull([] { requireBytes(nullptr, 0); }));
    EXPECT_FALSE(failsForNull([] { requireBytes("x", 1); }));
}

TEST_F(HostArgumentsTest, BytesOfHandle_FollowsTheHandle) {
    char bytes[] = "bytes";
    void* pointer = bytes;
    void* null = nullptr;
    EXPECT_EQ(static_cast<const void*>(bytesOfHandle(&pointer, 5)), bytes);
    EXPECT_EQ(bytesOfHandle(&null, 0), nullptr);
    EXPECT_TRUE(failsForNull([&] { bytesOfHandle(nullptr, 0); }));
    EXPECT_TRUE(failsForNull([&] { bytesOfHandle(&null, 1); }));
}

TEST_F(HostArgumentsTest, IdentifierOfHandle_CopiesSixteenBytes) {
    Identifier name("a class");
    void* handle = name.bytes();
    const auto copy = identifierOfHandle<CPPClassID>(&handle);
    EXPECT_EQ(copy.compare("a class\0\0\0\0\0\0\0\0\0", 16), 0);
}

TEST_F(HostArgumentsTest, NamesExecuter_NeedsHandleAndPointer) {
    Identifier name("executer");
    void* handle = name.bytes();
    void* null = nullptr;
    EXPECT_TRUE(namesExecuter(&handle));
    EXPECT_FALSE(namesExecuter(&null));
    EXPECT_FALSE(namesExecuter(nullptr));
}

TEST_F(HostArgumentsTest, ClassesOfList_CopiesThemInOrder) {
    Identifier first("first");
    Identifier second("second");
    void* list[] = {first.bytes(), second.bytes()};
    const auto classes = classesOfList(list, 2);
    ASSERT_EQ(classes.size(), 2u);
    EXPECT_EQ(classes[0].compare("first\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
    EXPECT_EQ(classes[1].compare("second\0\0\0\0\0\0\0\0\0\0", 16), 0);
}

TEST_F(HostArgumentsTest, ClassesOfList_NullIsLegalWithoutClassesOnly) {
    Identifier first("first");
    void* gap[] = {first.bytes(), nullptr};
    EXPECT_TRUE(classesOfList(nullptr, 0).empty());
    EXPECT_TRUE(failsForNull([] { classesOfList(nullptr, 1); }));
    EXPECT_TRUE(failsForNull([&] { classesOfList(gap, 2); }));
}

TEST_F(HostArgumentsTest, SignedLength_TakesWhatHasAPlaceInASignedNumber) {
    EXPECT_EQ(signedLength(0), 0);
    EXPECT_EQ(signedLength(0x7FFFFFFF), 0x7FFFFFFF);
    for (uint32_t length : {0x80000000u, 0xFFFFFFFFu}) {
        const Attempt result = attempt([length] { return signedLength(length) < 0; });
        ASSERT_TRUE(result.failure) << length;
        EXPECT_EQ(result.failure->getTypeCode(), 0u);
        EXPECT_STREQ(result.failure->getMessage(), "Too much.");
    }
}

}  // namespace
}  // namespace dovrel
