// A folder that is being read, entry by entry. Private to the layer.
#pragma once

#include <dirent.h>

#include <cstring>
#include <string>

namespace portability {

/// Gives the folder's entries without "." and ".."; none when it cannot be read. Closes the folder at its
/// end.
class OpenFolder {
  public:
    explicit OpenFolder(const std::string& path) : folder_(opendir(path.c_str())) {}
    ~OpenFolder() {
        if (folder_ != nullptr) {
            closedir(folder_);
        }
    }
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    /// The next entry, valid until the next call; null at the end.
    const dirent* next() {
        while (folder_ != nullptr) {
            const dirent* entry = readdir(folder_);
            if (entry == nullptr ||
                (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)) {
                return entry;
            }
        }
        return nullptr;
    }

  private:
    DIR* folder_;
};

}  // namespace portability
