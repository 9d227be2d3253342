// Sends and receives messages over a blocking stream socket: a length of 8 bytes, then the data. All
// functions return false if the peer has closed the connection.
#pragma once

#include <sys/uio.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <vector>

inline bool readAll(int descriptor, void* data, size_t size) {
    auto* at = static_cast<char*>(data);
    while (size > 0) {
        const ssize_t count = read(descriptor, at, size);
        if (count <= 0) return false;
        at += count;
        size -= static_cast<size_t>(count);
    }
    return true;
}

/// Writes the length and the data with one call, if the socket accepts all of it, otherwise with several.
inline bool writeMessage(int descriptor, const void* data, uint64_t size) {
    iovec parts[2] = {{&size, sizeof size}, {const_cast<void*>(data), size}};
    iovec* part = parts;
    while (part < parts + 2) {
        const ssize_t count = writev(descriptor, part, static_cast<int>(parts + 2 - part));
        if (count <= 0) return false;
        auto left = static_cast<size_t>(count);
        while (part < parts + 2 && left >= part->iov_len)
            left -= (part++)->iov_len;
        if (part == parts + 2) break;
        part->iov_base = static_cast<char*>(part->iov_base) + left;
        part->iov_len -= left;
    }
    return true;
}

/// Also returns false if the message does not fit into the buffer.
inline bool readMessage(int descriptor, std::vector<char>& buffer, uint64_t& size) {
    return readAll(descriptor, &size, sizeof size) && size <= buffer.size() &&
           readAll(descriptor, buffer.data(), size);
}
