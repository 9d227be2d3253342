#include "server/SettingsFile.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>

#include "client/exceptions/CPPException.h"
#include "settings/ConfigFileSystem.h"

namespace merrowd {

using dovrel::ConfigFileSystem;
using dovrel::CPPException;

namespace {

// Reports a zero byte in the file. The configuration text ends there, and the text that
// was read does not show it.
void reportZeroByte(const std::string& path, ControlCalls& control) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    const size_t place = bytes.find('\0');
    if (place == std::string::npos) return;
    const auto line = 1 + std::count(bytes.data(), bytes.data() + place, '\n');
    control.addStartProblem(path + ": line " + std::to_string(line) +
                            ": what follows its zero byte does not count");
}

}  // namespace

void readSettingsFile(const std::string& path, ControlCalls& control) {
    if (access(path.c_str(), F_OK) != 0) return;
    try {
        control.applyAtStart(ConfigFileSystem::readText(path), path);
        reportZeroByte(path, control);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        control.addStartProblem(failure->getMessage());
    }
}

}  // namespace merrowd
