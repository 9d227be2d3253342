// What a trace holds, for tests that read one.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace dovrel::test {

/// The lines of this process's trace without process and time; fails the test where a line does not begin
/// with them.
inline std::vector<std::string> traceLinesOf(const std::string& trace) {
    const std::string begin = "dovrel " + std::to_string(getpid()) + " ";
    std::vector<std::string> lines;
    for (size_t from = 0; from < trace.size();) {
        const size_t end = trace.find('\n', from);
        const std::string line = trace.substr(from, end - from);
        from = end == std::string::npos ? trace.size() : end + 1;
        EXPECT_EQ(line.compare(0, begin.size(), begin), 0) << line;
        const size_t unit = line.find_first_not_of("0123456789", begin.size());
        EXPECT_GT(unit, begin.size()) << line;
        EXPECT_EQ(line.compare(unit, 4, " us "), 0) << line;
        lines.push_back(line.substr(unit + 4));
    }
    return lines;
}

}  // namespace dovrel::test
