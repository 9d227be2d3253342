#include "tools/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <iterator>

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

}  // namespace

std::string readInput(const std::string& path) {
    if (path == kStandardStream)
        return {std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    const OpenFile file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) failReading(path, errno);
    std::string content;
    std::string block(kBlockSize, '\0');
    while (const size_t count = std::fread(block.data(), 1, block.size(), file.get()))
        content.append(block, 0, count);
    if (std::ferror(file.get()) != 0) failReading(path, errno);
    return content;
}

void writeOutput(const std::string& path, const std::string& content) {
    if (path == kStandardStream) {
        std::cout << content;
    } else if (!replaceFileContent(path, content)) {
        throw ToolFailure("cannot write " + path);
    }
}

}  // namespace dovrel::tools
