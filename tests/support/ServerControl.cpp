#include "tests/support/ServerControl.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace dovrel::test {

namespace {

constexpr int kReached = 1;  // the tool's greatest exit status that means that the server has replied

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

int ServerControl::run(const std::string& option, const std::string& input, std::string& output) {
    const std::string in = temporaryFile();
    const std::string out = temporaryFile();
    std::ofstream(in, std::ios::binary) << input;
    const std::string command =
        "exec \"" + std::string(MERROWD_CONTROL) + "\" " + option + " <\"" + in + "\" >\"" + out + "\" 2>&1";
    const int status = system(command.c_str());
    unlink(in.c_str());
    output = takeContent(out);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ServerControl::send(const std::string& settings) {
    std::string output;
    EXPECT_EQ(run("", settings, output), 0) << output;
}

std::map<std::string, int> ServerControl::status() {
    std::string output;
    const int status = run("", "", output);
    std::map<std::string, int> values;
    if (status < 0 || status > kReached) return values;
    std::istringstream lines(output);
    for (std::string key, value; std::getline(lines, key) && std::getline(lines, value);) {
        if (value.compare(0, 4, "INT:") == 0) values[key.substr(2)] = std::stoi(value.substr(4));
    }
    return values;
}

void ServerControl::quit() {
    std::string output;
    EXPECT_EQ(run("--quit", "", output), 0) << output;
}

}  // namespace dovrel::test
