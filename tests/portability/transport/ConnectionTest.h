// Shared by the tests of connections: a connection to a peer that acts as the test wants.
#pragma once

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>

#include "portability/transport/Connection.h"
#include "tests/portability/support/Peer.h"
#include "tests/support/TemporaryEnvironment.h"

class ConnectionTest : public testing::Test {
  protected:
    using Outcome = portability::Connection::Outcome;

    // Both send a request over the connection, which is made anew if the last one cannot be used any more.
    Outcome send(long ticks = kAEDefaultTimeout, int32_t mode = 0) {
        return measured(ticks, mode, "request", [this](const portability::OutgoingRequest& request) {
            portability::ReceivedReply received;
            const Outcome outcome = connection_->exchange(request, received);
            if (outcome == Outcome::done) {
                result_ = received.result;
                text_ = firstItemText(received.image, received.size);
            }
            return outcome;
        });
    }
    Outcome post(long ticks = 0, const std::string& text = "request") {
        return measured(ticks, 0, text, [this](const portability::OutgoingRequest& request) {
            return connection_->post(request);
        });
    }

    void expectTicks(long ticks) const {
        EXPECT_GE(seconds_, static_cast<double>(ticks) / 60);
        EXPECT_LT(seconds_, static_cast<double>(ticks) / 60 + 5) << "a generous limit for a busy machine";
    }

    TemporaryEnvironment environment_;
    std::unique_ptr<portability::Connection> connection_;
    int32_t result_ = 0;  // of the last reply
    std::string text_;
    double seconds_ = 0;  // how long the last request took

  private:
    template <typename Send>
    Outcome measured(long ticks, int32_t mode, const std::string& text, const Send& send) {
        if (connection_ == nullptr) {
            portability::FileDescriptor socket;
            portability::connectToEndpoint(kPeerCode, portability::Deadline::never(), socket);
            connection_ = std::make_unique<portability::Connection>(std::move(socket));
        }
        const Bytes bytes = itemBytes(keyDirectObject, text);
        const portability::MessageMemory image(bytes.data(), bytes.size());
        const std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
        const Outcome outcome = send(
            {image, mode, static_cast<int32_t>(ticks), portability::Deadline::afterTicks(ticks), nullptr});
        seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        if (outcome == Outcome::notSent || outcome == Outcome::lost) connection_.reset();
        return outcome;
    }
};
