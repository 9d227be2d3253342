// Tests the typical use of the library by a host, from start to end.
#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

class MainJob : public EndToEnd {
  protected:
    void doItAll() {
        ASSERT_EQ(library_.InitializePOS(), POS_OK);
        const uint32_t application = host_.registered({"Counter", "Digest"});
        ObjectId counter = host_.instantiate(application, "Counter");
        ASSERT_TRUE(counter.isThere());
        EXPECT_EQ(host_.call(application, counter, "add", littleEndian(40)).bytes, littleEndian(40));
        EXPECT_EQ(host_.call(application, counter, "add", littleEndian(2)).bytes, littleEndian(42));
        const Answered reset = host_.call(application, counter, "reset");
        EXPECT_EQ(reset.status, POS_OK);
        EXPECT_EQ(reset.bytes, "");
        EXPECT_EQ(host_.command(application, "ping", "pong").bytes, "pong");
        EXPECT_EQ(host_.information(application, std::string("\x04\x00", 2)).bytes, littleEndian(1));
        EXPECT_EQ(library_.posDeleteObject(application, counter.handle()), POS_OK);
        EXPECT_EQ(host_.information(application, std::string("\x04\x00", 2)).bytes, littleEndian(0));
        EXPECT_EQ(library_.posUnregisterApplication(application), POS_OK);
        library_.TerminatePOS();
    }
};

TEST_F(MainJob, FromStartToEnd_WorksAndSaysNothing) {
    Console console;
    doItAll();
    console.stop();
    EXPECT_EQ(console.output(), "");
    EXPECT_EQ(alerts(console), 0u);
    EXPECT_EQ(root_.servers().size(), 1u) << "launched by the library, and still there";
}

TEST_F(MainJob, TwiceInOneProcess_UsesTheServerThatRuns) {
    doItAll();
    const std::vector<pid_t> first = root_.servers();
    doItAll();
    EXPECT_EQ(root_.servers(), first);
}

TEST_F(MainJob, TheDigestOfAFile_IsWhatRfc1321Says) {
    library_.InitializePOS();
    const uint32_t application = host_.registered({"Digest"});
    ObjectId digest = host_.instantiate(application, "Digest");
    EXPECT_EQ(host_.call(application, digest, "md5", "message digest").bytes,
              "f96b697d7cb7938d525a2f31aaf161d0");
    library_.TerminatePOS();
}

TEST_F(MainJob, ServerWithoutItsFiles_IsNotNeededForTheFreeingFunctions) {
    EXPECT_EQ(library_.posDeleteDLLHeapData(nullptr), POS_OK);
    EXPECT_EQ(library_.posFreeDllHeapData(nullptr), POS_OK);
}

TEST_F(MainJob, SeveralApplicationsOfOneHost_KeepTheirObjectsApart) {
    library_.InitializePOS();
    const uint32_t one = host_.registered({"Counter"});
    const uint32_t two = host_.registered({"Counter"});
    EXPECT_NE(one, two);
    ObjectId counter = host_.instantiate(one, "Counter");
    Console console;
    EXPECT_EQ(host_.call(two, counter, "value").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(countFailures(console, "the application has no such object", "DLL_ERROR_UNRECOVERABLE_ERROR"),
              1u);
    EXPECT_EQ(host_.call(one, counter, "value").status, POS_OK);
    library_.TerminatePOS();
}

TEST_F(MainJob, EveryClassOfTheServer_CanBeUsed) {
    library_.InitializePOS();
    const uint32_t application = host_.registered({"Clock", "Counter", "Digest", "Echo", "Notes"});
    for (const char* name : {"Clock", "Counter", "Digest", "Echo", "Notes"}) {
        EXPECT_TRUE(host_.instantiate(application, name).isThere()) << name;
    }
    ObjectId notes = host_.instantiate(application, "Notes");
    EXPECT_EQ(host_.call(application, notes, "put", std::string("a\0one", 5)).status, POS_OK);
    EXPECT_EQ(host_.call(application, notes, "get", "a").bytes, "one");
    library_.TerminatePOS();
}

}  // namespace
}  // namespace dovrel::test
