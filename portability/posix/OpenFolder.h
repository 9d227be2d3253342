// Reads a folder entry by entry. Private to the layer.
#pragma once

#include <dirent.h>

#include <cstring>
#include <string>

namespace portability {

/// Reads the entries of a folder, without "." and "..". A folder that cannot be opened has no entries. The
/// destructor closes the folder.
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

    /// Returns the next entry, which is valid until the next call, or null at the end.
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
