#include "portability/transport/ConnectionPool.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/portability/support/RawSocket.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryEnvironment.h"

using namespace portability;

namespace {

constexpr OSType kSignature = 'PooL';

std::unique_ptr<KeptConnection> makeConnection(OSType signature) {
    return std::make_unique<KeptConnection>(signature, std::move(connectedSockets().first));
}

class ConnectionPoolTest : public testing::Test {
  protected:
    // Empties the pool for the next tests.
    ~ConnectionPoolTest() override {
        while (takeKeptConnection(kSignature) != nullptr) {
        }
    }

    TemporaryEnvironment environment_;
};

}  // namespace

TEST_F(ConnectionPoolTest, Take_FromNothing_IsNull) {
    EXPECT_EQ(takeKeptConnection(kSignature), nullptr);
}

TEST_F(ConnectionPoolTest, Take_GivesEachKeptConnectionOnce) {
    auto connection = makeConnection(kSignature);
    const KeptConnection* raw = connection.get();
    keepConnection(std::move(connection));
    const auto taken = takeKeptConnection(kSignature);
    EXPECT_EQ(taken.get(), raw);
    EXPECT_EQ(takeKeptConnection(kSignature), nullptr);
}

TEST_F(ConnectionPoolTest, Take_TheOneUsedLast) {
    std::vector<const KeptConnection*> raw;
    for (int i = 0; i < 3; ++i) {
        auto connection = makeConnection(kSignature);
        raw.push_back(connection.get());
        keepConnection(std::move(connection));
    }
    const auto first = takeKeptConnection(kSignature);
    const auto second = takeKeptConnection(kSignature);
    const auto third = takeKeptConnection(kSignature);
    EXPECT_EQ(first.get(), raw[2]);
    EXPECT_EQ(second.get(), raw[1]);
    EXPECT_EQ(third.get(), raw[0]);
}

TEST_F(ConnectionPoolTest, Take_OtherSignatureRootOrRuntimeFolder_IsNull) {
    keepConnection(makeConnection(kSignature));
    EXPECT_EQ(takeKeptConnection('OTHR'), nullptr);
    {
        TemporaryEnvironment other;
        EXPECT_EQ(takeKeptConnection(kSignature), nullptr);
    }
    TemporaryEnvironment::set("POS_SYSTEM_ROOT", environment_.folder() / "root");
    EXPECT_EQ(takeKeptConnection(kSignature), nullptr) << "the runtime folder is still another one";
    TemporaryEnvironment::set("XDG_RUNTIME_DIR", environment_.runtimeFolder());
    EXPECT_NE(takeKeptConnection(kSignature), nullptr);
}

TEST_F(ConnectionPoolTest, NumberKept_IsBounded) {
    const int before = openDescriptors();
    for (int i = 0; i < 50; ++i)
        keepConnection(makeConnection(kSignature));
    EXPECT_LE(openDescriptors(), before + 8);
    EXPECT_NE(takeKeptConnection(kSignature), nullptr);
}

TEST_F(ConnectionPoolTest, ForkedProcess_GetsNoneOfItsParents) {
    keepConnection(makeConnection(kSignature));
    EXPECT_EQ(inForkedProcess([] { return takeKeptConnection(kSignature) == nullptr ? 0 : 1; }), 0);
    EXPECT_NE(takeKeptConnection(kSignature), nullptr) << "the parent still has it";
}

TEST_F(ConnectionPoolTest, ManyThreads_NeverShareAConnection) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < 500; ++i) {
                auto connection = takeKeptConnection(kSignature);
                if (connection == nullptr) connection = makeConnection(kSignature);
                keepConnection(std::move(connection));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}
