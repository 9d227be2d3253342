// Splits a trace into entries, for tests that read one.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace dovrel::test {

/// Returns the entries of this process's trace without process and time, each with its continuation lines.
/// Fails the test if a line neither begins an entry nor is indented.
inline std::vector<std::string> splitTraceEntries(const std::string& trace) {
    constexpr char kIndent[] = "    ";
    const std::string begin = "dovrel " + std::to_string(getpid()) + " ";
    std::vector<std::string> entries;
    for (size_t from = 0; from < trace.size();) {
        const size_t end = trace.find('\n', from);
        const std::string line = trace.substr(from, end - from);
        from = end == std::string::npos ? trace.size() : end + 1;
        if (!entries.empty() && line.compare(0, sizeof kIndent - 1, kIndent) == 0) {
            entries.back() += "\n" + line;
            continue;
        }
        EXPECT_EQ(line.compare(0, begin.size(), begin), 0) << line;
        const size_t unit = line.find_first_not_of("0123456789", begin.size());
        EXPECT_GT(unit, begin.size()) << line;
        EXPECT_EQ(line.compare(unit, 4, " us "), 0) << line;
        entries.push_back(line.substr(unit + 4));
    }
    return entries;
}

/// Does the same for a trace in which every entry is one line.
inline std::vector<std::string> splitTraceLines(const std::string& trace) {
    const std::vector<std::string> entries = splitTraceEntries(trace);
    for (const std::string& entry : entries)
        EXPECT_EQ(entry.find('\n'), std::string::npos) << entry;
    return entries;
}

}  // namespace dovrel::test
