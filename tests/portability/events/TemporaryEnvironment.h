// Folders of a test's own: nothing that another test, or the user, does is seen in them, and nothing remains
// of them.
#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

class TemporaryEnvironment {
  public:
    TemporaryEnvironment() {
        std::string pattern = (std::filesystem::temp_directory_path() / "events.XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
        folder_ = pattern;
        set("POS_SYSTEM_ROOT", makeFolder("root"));
        set("XDG_RUNTIME_DIR", makeFolder("run"));
        set("HOME", makeFolder("home"));
    }
    TemporaryEnvironment(const TemporaryEnvironment&) = delete;
    TemporaryEnvironment& operator=(const TemporaryEnvironment&) = delete;
    ~TemporaryEnvironment() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    const std::filesystem::path& folder() const { return folder_; }
    std::filesystem::path runtimeFolder() const { return folder_ / "run"; }

    static void set(const char* name, const std::filesystem::path& value) { setenv(name, value.c_str(), 1); }

    std::filesystem::path makeFolder(const std::string& name) const {
        const std::filesystem::path path = folder_ / name;
        std::filesystem::create_directories(path);
        chmod(path.c_str(), 0700);
        return path;
    }

  private:
    std::filesystem::path folder_;
};
