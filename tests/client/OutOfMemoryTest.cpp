// Makes each allocation fail once, alone and together with all later ones. Each exported function must then
// fail with cleared outputs, or succeed anyway. The lock must be free, the registry unchanged, and the next
// call must work. The sanitizers check that nothing leaks and that nothing is freed twice.
#include <cstring>
#include <new>

#include "client/exceptions/CPPException.h"
#include "tests/client/SessionOperationsTest.h"
#include "tests/support/HeapWatch.h"

namespace dovrel {
namespace {

constexpr uint32_t kApplication = 7;
constexpr uint32_t kUntouched = 99;

class ClientOutOfMemoryTest : public test::SessionOperationsTest {
  protected:
    ClientOutOfMemoryTest() {
        forwarder_->answer(posCommand::kRegisterApplication, test::registration(kApplication));
    }

    /// Calls `check(done)` after each run of `work`. `work` returns true if it succeeded.
    template <class Work, class Check>
    static void failEachRequest(const Work& work, const Check& check) {
        bool done = false;
        test::refuseEachRequest([&] { done = work(); },
                                [&](bool refused) {
                                    EXPECT_TRUE(done || refused) << "failed without a reason";
                                    check(done);
                                });
    }

    /// For operations of the registered application. After each success, `succeeds()` checks the outputs.
    template <class Operation, class Succeeds>
    void failEachRequestDuring(const Operation& operation, const Succeeds& succeeds) {
        registered("Host");
        failEachRequest([&] { return operation() == POS_OK; },
                        [&](bool done) {
                            if (done) {
                                succeeds();
                            } else {
                                EXPECT_EQ(object_, nullptr);
                                EXPECT_EQ(result_, nullptr);
                                EXPECT_EQ(resultLength_, 0u);
                                EXPECT_EQ(infoLength_, 0);
                            }
                            EXPECT_EQ(currentSession()->client().applicationCount(), 1u);
                            EXPECT_TRUE(currentSession()->client().isRegistered(kApplication));
                            ASSERT_EQ(operation(), POS_OK) << "the next call";
                            succeeds();
                        });
    }

    void expectObject() {
        ASSERT_NE(object_, nullptr);
        EXPECT_EQ(std::memcmp(object_, "object\0\0\0\0\0\0\0\0\0\0", 16), 0);
        posFreeDllHeapData(object_);
        object_ = nullptr;
    }
    void expectResult() {
        ASSERT_EQ(resultLength_, 6u);
        resultLength_ = 0;
        EXPECT_EQ(std::memcmp(result_, "result", 6), 0);
        posDeleteDLLHeapData(result_);
        result_ = nullptr;
    }
};

TEST_F(ClientOutOfMemoryTest, Register_FailsWithNothingRecordedOrRegistersInFull) {
    uint32_t applicationId = kUntouched;
    uint16_t options[] = {1121};
    const auto registerHost = [&] {
        applicationId = kUntouched;
        return posRegisterApplicationWithClasses("Host", &identifier_, 1, options, 2, &applicationId) ==
               POS_OK;
    };
    const auto expectRegistered = [&] {
        EXPECT_EQ(applicationId, kApplication);
        EXPECT_STREQ(currentSession()->client().applicationName(kApplication), "Host");
        EXPECT_TRUE(currentSession()->dialogHandler().isSilenced(kApplication));
        EXPECT_EQ(currentSession()->dialogHandler().currentApplicationName(), "Host");
        EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(130).substr(30),
                  std::string("Counter\0\0\0\0\0\0\0\0\0", 16));
        ASSERT_EQ(posUnregisterApplication(kApplication), POS_OK);
    };
    failEachRequest(registerHost, [&](bool done) {
        if (done) {
            expectRegistered();
        } else {
            EXPECT_EQ(applicationId, kUntouched);
            EXPECT_EQ(currentSession()->client().applicationCount(), 0u);
            EXPECT_FALSE(currentSession()->dialogHandler().isSilenced(kApplication));
        }
        ASSERT_TRUE(registerHost()) << "the next call";
        expectRegistered();
    });
}

TEST_F(ClientOutOfMemoryTest, Register_LongName_IsRecordedInFullOrNotAtAll) {
    const char name[] = "A name that is longer than what a string holds in itself";
    uint32_t applicationId = kUntouched;
    failEachRequest(
        [&] {
            return posRegisterApplicationWithClasses(name, nullptr, 0, nullptr, 0, &applicationId) == POS_OK;
        },
        [&](bool done) {
            EXPECT_EQ(currentSession()->client().applicationCount(), done ? 1u : 0u);
            if (!done) return;
            EXPECT_STREQ(currentSession()->client().applicationName(kApplication), name);
            EXPECT_EQ(forwarder_->lastRequest(posCommand::kRegisterApplication)->readString(100),
                      std::string(name, sizeof name));
            ASSERT_EQ(posUnregisterApplication(kApplication), POS_OK);
        });
}

TEST_F(ClientOutOfMemoryTest, Unregister_KeepsTheRecordOrRemovesIt) {
    registered("Host");
    failEachRequest([] { return posUnregisterApplication(kApplication) == POS_OK; },
                    [&](bool done) {
                        EXPECT_EQ(currentSession()->client().isRegistered(kApplication), !done);
                        if (!done) {
                            ASSERT_EQ(posUnregisterApplication(kApplication), POS_OK) << "the next call";
                        }
                        registered("Host");
                    });
}

TEST_F(ClientOutOfMemoryTest, Instantiate_FailsWithoutAnObjectOrReturnsIt) {
    failEachRequestDuring([this] { return instantiate(kApplication); }, [this] { expectObject(); });
}

TEST_F(ClientOutOfMemoryTest, Instantiate_MessageThatCannotBeShown_IsNotAFailure) {
    forwarder_->answer(posCommand::kInstantiateObject,
                       test::object("object", 1, "A message of the server that is long enough."));
    failEachRequestDuring([this] { return instantiate(kApplication); }, [this] { expectObject(); });
}

TEST_F(ClientOutOfMemoryTest, CallMethod_FailsWithoutAResultOrReturnsIt) {
    failEachRequestDuring([this] { return call(kApplication); }, [this] { expectResult(); });
}

TEST_F(ClientOutOfMemoryTest, CallMethodOnExecuter_FailsWithoutAResultOrReturnsIt) {
    const auto callOnExecuter = [this] {
        fillOutputs();
        return posCallMethodOnExecuter(kApplication, &identifier_, &identifier_, "add", nullptr, 0, &result_,
                                       &resultLength_);
    };
    failEachRequestDuring(callOnExecuter, [this] {
        EXPECT_EQ(forwarder_->lastRequest(posCommand::kCallMethod)->readString(104),
                  std::string("Counter\0\0\0\0\0\0\0\0\0", 16));
        expectResult();
    });
}

TEST_F(ClientOutOfMemoryTest, DeleteObject_FailsOrDeletes) {
    failEachRequestDuring([this] { return deleteObject(kApplication); }, [] {});
}

TEST_F(ClientOutOfMemoryTest, ExecuteCommand_FailsWithoutAResultOrReturnsIt) {
    failEachRequestDuring([this] { return execute(kApplication); }, [this] { expectResult(); });
}

TEST_F(ClientOutOfMemoryTest, GetInfo_FailsWithoutABlockOrReturnsIt) {
    failEachRequestDuring([this] { return getInfo(kApplication); },
                          [this] {
                              ASSERT_EQ(infoLength_, 11);
                              infoLength_ = 0;
                              EXPECT_EQ(std::memcmp(result_, "information", 11), 0);
                              posDeleteDLLHeapData(result_);
                              result_ = nullptr;
                          });
}

TEST_F(ClientOutOfMemoryTest, FailureOfTheServer_StaysAFailureWhoseReportMayBeLost) {
    registered("Host");
    forwarder_->answer(posCommand::kCallMethod, test::error(28, "broken"));
    failEachRequest(
        [this] {
            const uint32_t status = call(kApplication);
            return status == POS_FAILURE && result_ == nullptr && resultLength_ == 0;
        },
        [](bool done) { EXPECT_TRUE(done); });
}

/// Opens the session and returns true; returns false if that throws std::bad_alloc
/// or an exception of the library.
bool isOpenedWith(const SessionParts& parts) {
    try {
        openSession(parts);
        return true;
    } catch (CPPException* caught) {
        delete caught;
    } catch (const std::bad_alloc&) {
    }
    return false;
}

TEST_F(ClientOutOfMemoryTest, OpenSession_PassesTheFailureOnAndLeavesNoSession) {
    closeSession();
    failEachRequest([this] { return isOpenedWith(parts_); },
                    [this](bool done) {
                        EXPECT_EQ(currentSession() != nullptr, done);
                        if (!done) openSession(parts_);
                        ASSERT_NE(currentSession(), nullptr);
                        registered("Host");
                        closeSession();
                    });
}

TEST_F(ClientOutOfMemoryTest, CloseSession_EndsItWhateverFails) {
    registered("Host");
    failEachRequest(
        [] {
            closeSession();
            return true;
        },
        [this](bool) {
            EXPECT_EQ(currentSession(), nullptr);
            openSession(parts_);
            registered("Host");
        });
}

TEST_F(ClientOutOfMemoryTest, OpenSession_OfAHost_PassesTheFailureOnAndLeavesNoSession) {
    closeSession();
    failEachRequest([] { return isOpenedWith(platformParts()); },
                    [](bool done) {
                        EXPECT_EQ(currentSession() != nullptr, done);
                        if (!done) openSession(platformParts());
                        ASSERT_NE(currentSession(), nullptr);
                        closeSession();
                    });
}

}  // namespace
}  // namespace dovrel
