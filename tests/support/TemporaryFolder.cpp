#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace dovrel::test {

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "dovrel-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder: " + name);
    path_ = std::filesystem::canonical(name).string();
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void TemporaryFolder::write(const std::string& name, const std::string& content) const {
    const std::filesystem::path file = path(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << content;
    if (!stream.flush()) throw std::runtime_error("cannot write " + file.string());
}

std::string TemporaryFolder::read(const std::string& name) const {
    std::ifstream stream(path(name), std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path(name);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

}  // namespace dovrel::test
