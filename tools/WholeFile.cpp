#include "tools/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "platform/files/FileReplacement.h"
#include "platform/files/OpenFile.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {

namespace {

constexpr char kStandardStream[] = "-";
constexpr size_t kBlockSize = 65536;

[[noreturn]] void failReading(const std::string& path, int error) {
    throw ToolFailure("cannot read " + path + ": " + std::strerror(error));
}

std::string readAll(std::FILE* file, const std::string& path) {
    std::string content;
    std::string block(kBlockSize, '\0');
    while (const size_t count = std::fread(block.data(), 1, block.size(), file))
        content.append(block, 0, count);
    if (std::ferror(file) != 0) failReading(path, errno);
    return content;
}

bool writeStream(const std::string& path, const std::string& content) {
    OpenFile file(std::fopen(path.c_str(), "wb"));
    if (file == nullptr) return false;
    if (std::fwrite(content.data(), 1, content.size(), file.get()) != content.size()) return false;
    return std::fclose(file.release()) == 0;
}

bool writeFile(const std::string& path, const std::string& content) {
    std::error_code ignored;
    const std::filesystem::file_status found = std::filesystem::status(path, ignored);
    // A device and a pipe have no old content to keep, and opening a pipe must wait for its reader.
    const bool isStream = std::filesystem::exists(found) && !std::filesystem::is_regular_file(found);
    return isStream ? writeStream(path, content) : replaceFileContent(path, content);
}

}  // namespace

std::string readInput(const std::string& path) {
    if (path == kStandardStream) return readAll(stdin, "standard input");
    const OpenFile file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) failReading(path, errno);
    return readAll(file.get(), path);
}

void writeOutput(const std::string& path, const std::string& content) {
    if (path == kStandardStream) {
        std::cout << content;
    } else if (!writeFile(path, content)) {
        throw ToolFailure("cannot write " + path + ": " + std::strerror(errno));
    }
}

}  // namespace dovrel::tools
