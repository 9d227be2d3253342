// ChannelFixture: a separate installation, with a double in place of the platform's calls.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "InterProcessCommunication/IPC_Info.h"
#include "tests/InterProcessCommunication/PlatformDouble.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

constexpr char kServerBundle[] = "Library/Application Support/Tessilor/pos/Merrowd.app";

class ChannelFixture : public testing::Test {
  protected:
    ChannelFixture() {
        setenv("POS_SYSTEM_ROOT", root.path().c_str(), 1);
        root.write("Library/Application Support/other", "");
    }

    /// Fails the test if a descriptor was not disposed of.
    ~ChannelFixture() override { EXPECT_EQ(platform.livingDescriptors, 0); }

    /// Installs the server application.
    void install() { root.write(std::string(kServerBundle) + "/Contents/Info.plist", ""); }

    void uninstall() { std::filesystem::remove_all(root.path(kServerBundle)); }

    /// Replies to every event with this direct parameter (without one for nullopt).
    void answerAlways(const std::optional<std::string>& directParameter) {
        platform.server = [directParameter](const SentEvent&, AppleEvent* reply) {
            return PlatformDouble::answerWith(reply, directParameter);
        };
    }

    /// Makes every event fail with this result.
    void failAlways(OSErr result) {
        platform.server = [result](const SentEvent&, AppleEvent*) { return result; };
    }

    /// Returns how many events with this id were sent.
    int countSent(AEEventID eventID) const {
        int count = 0;
        for (const SentEvent& event : platform.sent)
            count += event.eventID == eventID ? 1 : 0;
        return count;
    }

    static void give(IPC_Info& info, const std::string& bytes) {
        std::unique_ptr<uint8_t[]> buffer(new uint8_t[bytes.size()]);
        for (size_t i = 0; i < bytes.size(); ++i)
            buffer[i] = static_cast<uint8_t>(bytes[i]);
        info.setSendBuffer(std::move(buffer), static_cast<uint32_t>(bytes.size()));
    }

    static std::string received(const IPC_Info& info) {
        return std::string(info.getReceiveBuffer(), info.getReceiveBuffer() + info.getReceiveSize());
    }

    TemporaryFolder root;
    PlatformDouble platform;
};

}  // namespace dovrel::test
