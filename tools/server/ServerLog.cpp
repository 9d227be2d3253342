#include "tools/server/ServerLog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <vector>

#include "platform/files/Places.h"
#include "server/ServerFiles.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {

namespace {

constexpr useconds_t kBetweenLooks = 100000;

struct Options {
    uint32_t lines = 40;
    bool follows = false;
};

std::string logPath() {
    return logFolderPath(false) + merrowd::kLogName;
}

std::string lastLines(const std::string& content, size_t count) {
    std::vector<size_t> begins = {0};
    for (size_t lineFeed = content.find('\n'); lineFeed != std::string::npos;
         lineFeed = content.find('\n', lineFeed + 1))
        begins.push_back(lineFeed + 1);
    // After the last line feed there is no line.
    if (begins.back() < content.size()) begins.push_back(content.size());
    return content.substr(begins[begins.size() - 1 - std::min(count, begins.size() - 1)]);
}

// Reads the new part of a file again and again. If the file was replaced or has become shorter, it is read from the beginning.
class GrowingFile {
  public:
    explicit GrowingFile(std::string path) : path_(std::move(path)) {}

    /// Returns the bytes since the last call; none if the file cannot be read.
    std::string readNew() {
        struct stat found;
        if (stat(path_.c_str(), &found) != 0) return "";
        if (found.st_ino != file_ || found.st_size < position_) position_ = 0;
        file_ = found.st_ino;
        std::ifstream stream(path_, std::ios::binary);
        stream.seekg(position_);
        std::ostringstream content;
        content << stream.rdbuf();
        position_ += static_cast<off_t>(content.str().size());
        return content.str();
    }

  private:
    const std::string path_;
    ino_t file_ = 0;
    off_t position_ = 0;
};

void show(const Options& options) {
    const std::string path = logPath();
    if (!options.follows && access(path.c_str(), R_OK) != 0)
        throw ToolFailure("cannot read " + path + ": " + std::strerror(errno) +
                          "; the server writes each exchange into it after \"dovrel server set log 1\"");
    GrowingFile file(path);
    std::cout << lastLines(file.readNew(), options.lines) << std::flush;
    while (options.follows && std::cout) {
        usleep(kBetweenLooks);
        std::cout << file.readNew() << std::flush;
    }
}

}  // namespace

void addServerLog(CLI::App& server) {
    CLI::App& subcommand =
        addSubcommand(server, "log", "Show the end of the development server's log",
                      "dovrel server log --lines 100\n"
                      "dovrel server log --follow    shows new lines until it is interrupted");
    const auto options = std::make_shared<Options>();
    subcommand.add_option("-n,--lines", options->lines, "Show this number of lines (40)")->type_name("N");
    subcommand.add_flag("-f,--follow", options->follows, "Then show new lines when they are written");
    subcommand.callback([options] { show(*options); });
}

}  // namespace dovrel::tools
