#include "tests/support/ServerControl.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace dovrel::test {

namespace {

std::string temporaryFile() {
    std::string path = std::string(getenv("HOME")) + "/control.XXXXXX";
    const int descriptor = mkstemp(path.data());
    EXPECT_GE(descriptor, 0);
    close(descriptor);
    return path;
}

std::string takeContent(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    unlink(path.c_str());
    return content.str();
}

}  // namespace

std::string ServerControl::toolPath() {
    const char* const otherTool = getenv("DOVREL_TEST_TOOL");
    return otherTool ? otherTool : DOVREL_TOOL;
}

int ServerControl::run(const std::string& arguments, const std::string& input, std::string& output) {
    const std::string in = temporaryFile();
    const std::string out = temporaryFile();
    std::ofstream(in, std::ios::binary) << input;
    const std::string command =
        "exec \"" + toolPath() + "\" server " + arguments + " <\"" + in + "\" >\"" + out + "\" 2>&1";
    const int status = system(command.c_str());
    unlink(in.c_str());
    output = takeContent(out);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ServerControl::send(const std::string& settings) {
    std::string output;
    EXPECT_EQ(run("load", settings, output), 0) << output;
}

std::map<std::string, int> ServerControl::status() {
    std::string output;
    std::map<std::string, int> values;
    if (run("status --timeout 60", "", output) != 0) return values;
    std::istringstream lines(output);
    constexpr char kSeparator[] = ": ";
    for (std::string line; std::getline(lines, line);) {
        const size_t end = line.find(kSeparator);
        if (end != std::string::npos) values[line.substr(0, end)] = std::atoi(line.c_str() + end + 2);
    }
    return values;
}

void ServerControl::quit() {
    std::string output;
    EXPECT_EQ(run("stop --no-wait", "", output), 0) << output;
}

}  // namespace dovrel::test
