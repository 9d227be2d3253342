// A descriptor whose close takes long.
#pragma once

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <vector>

#include "portability/posix/FileDescriptor.h"

/// A TCP socket whose close waits for data that its peer does not read: for `kLinger` seconds, or until the
/// object is destroyed.
class LingeringSocket {
  public:
    LingeringSocket() {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        const portability::FileDescriptor listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(bind(listener.get(), generic, size), 0);
        EXPECT_EQ(listen(listener.get(), 1), 0);
        EXPECT_EQ(getsockname(listener.get(), generic, &size), 0);
        socket_.reset(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(connect(socket_.get(), generic, size), 0);
        peer_.reset(accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
        const std::vector<char> data(1 << 16);
        while (send(socket_.get(), data.data(), data.size(), MSG_DONTWAIT) > 0) {
        }
        constexpr int kLinger = 1000;
        const linger wait{1, kLinger};
        EXPECT_EQ(setsockopt(socket_.get(), SOL_SOCKET, SO_LINGER, &wait, sizeof wait), 0);
    }

    int get() const { return socket_.get(); }

    /// Closes this process's own descriptor of a socket that has been sent, so that the receiver's is the last.
    void closeOwn() { socket_.reset(); }

  private:
    portability::FileDescriptor socket_;
    portability::FileDescriptor peer_;
};
