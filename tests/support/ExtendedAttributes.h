// Extended attributes and access control lists of files, for tests.
#pragma once

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace dovrel::test {

/// Returns the value of an attribute; empty also if the file does not have the attribute.
inline std::string readAttribute(const std::string& file, const char* name) {
    std::array<char, 256> value;
    const ssize_t size = getxattr(file.c_str(), name, value.data(), value.size());
    return std::string(value.data(), size < 0 ? 0 : static_cast<size_t>(size));
}

/// Returns 0, or the number of the error. ENOTSUP means that the file system does not support such attributes.
inline int setAttribute(const std::string& file, const char* name, const std::string& value) {
    return setxattr(file.c_str(), name, value.data(), value.size(), 0) == 0 ? 0 : errno;
}

constexpr char kAccessList[] = "system.posix_acl_access";
constexpr char kDefaultAccessList[] = "system.posix_acl_default";

/// Returns an access control list in the system's format: owner, group and user 4711 may read and write.
inline std::string sharedAccessList() {
    struct Entry {
        std::uint16_t tag;
        std::uint16_t permissions;
        std::uint32_t id;
    };
    constexpr std::uint32_t kVersion = 2;
    constexpr std::uint32_t kNoId = 0xFFFFFFFF;
    // Owner, user, group, mask, others.
    constexpr Entry kEntries[] = {
        {0x01, 6, kNoId}, {0x02, 6, 4711}, {0x04, 6, kNoId}, {0x10, 6, kNoId}, {0x20, 0, kNoId}};
    std::string list(sizeof kVersion + sizeof kEntries, '\0');
    std::memcpy(list.data(), &kVersion, sizeof kVersion);
    std::memcpy(list.data() + sizeof kVersion, kEntries, sizeof kEntries);
    return list;
}

}  // namespace dovrel::test

/// Skips the test with a message if the file system does not support the attribute. Every other failure fails
/// the test.
#define SET_ATTRIBUTE_OR_SKIP(file, name, value)                                                      \
    do {                                                                                              \
        const int error = dovrel::test::setAttribute(file, name, value);                              \
        if (error == ENOTSUP)                                                                         \
            GTEST_SKIP() << "a temporary folder with files that can have this attribute is missing: " \
                         << (name);                                                                   \
        ASSERT_EQ(error, 0) << strerror(error);                                                       \
    } while (false)
