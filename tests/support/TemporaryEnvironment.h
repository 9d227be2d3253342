// Folders that belong to one test. Other tests and the user cannot affect them,
// and the destructor removes them.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/TemporaryFolder.h"

class TemporaryEnvironment {
  public:
    TemporaryEnvironment() {
        set("POS_SYSTEM_ROOT", makeRoot("root"));
        set("XDG_RUNTIME_DIR", makeFolder("run"));
        set("HOME", makeFolder("home"));
    }
    TemporaryEnvironment(const TemporaryEnvironment&) = delete;
    TemporaryEnvironment& operator=(const TemporaryEnvironment&) = delete;

    std::filesystem::path folder() const { return folder_.path(); }
    std::filesystem::path runtimeFolder() const { return folder() / "run"; }

    // The folder of the endpoints. The root has its own /tmp, so other roots do not see them.
    std::filesystem::path endpointFolder() const {
        return folder() / "root/tmp" / ("pos-events-" + std::to_string(geteuid()));
    }

    static void set(const char* name, const std::filesystem::path& value) { setenv(name, value.c_str(), 1); }

    std::filesystem::path makeFolder(const std::string& name) const {
        const std::filesystem::path path = folder() / name;
        std::filesystem::create_directories(path);
        chmod(path.c_str(), 0700);
        return path;
    }

    std::filesystem::path makeRoot(const std::string& name) const {
        return makeFolder(name + "/tmp").parent_path();
    }

  private:
    dovrel::test::TemporaryFolder folder_;
};
