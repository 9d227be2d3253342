#include "portability/corefoundation/FileURL.h"

#include <gtest/gtest.h>

#include <string>

using portability::escapedPath;
using portability::unescapePath;

TEST(FileURL, Escape_WhatAURLCannotHold_IsInHexadecimal) {
    EXPECT_EQ(escapedPath("/a b/%;?#[]\xC3\xA4\xFF"), "/a%20b/%25%3B%3F%23%5B%5D%C3%A4%FF");
    EXPECT_EQ(escapedPath("/Az09-._~!$&'()*+,=:@"), "/Az09-._~!$&'()*+,=:@");
    EXPECT_EQ(escapedPath(""), "");
}

TEST(FileURL, Unescape_UndoesEveryEscape) {
    std::string all;
    for (int byte = 1; byte <= 255; ++byte) {
        all += static_cast<char>(byte);
    }
    std::string path;
    EXPECT_TRUE(unescapePath(escapedPath(all), path));
    EXPECT_EQ(path, all);
    EXPECT_TRUE(unescapePath("%2f%2F", path));
    EXPECT_EQ(path, "//");
}

TEST(FileURL, Unescape_DamagedEscapesAndZeroBytes_AreRefused) {
    std::string path;
    for (const char* text : {"%", "%2", "a%2", "%zz", "%2z", "%-1", "%00", "a%00b"}) {
        EXPECT_FALSE(unescapePath(text, path)) << text;
    }
}
