// SuccessorFile: a new file in the same folder as an old one. It takes over the old file's name when its
// content is complete.
//
// The new file has the name of the old file plus ".new0" to ".new9". Its writer holds a lock on it. Until the
// content is complete, the file has the permission bits 0200, which users do not give to their files. So a
// file with such a name, exactly these bits and no lock was left by a writer that was killed.
//
// The writer copies the permissions of the old file to the new one just before the new one takes over the
// name. If the writer is killed between these two steps, the complete new content stays under the name with
// ".newN" until the user deletes it. It can no longer be distinguished from a user's file, so later writers use
// the next name. The same happens to every leftover on a file system that does not store permission bits.
#pragma once

#include <sys/stat.h>

#include <string>

namespace dovrel {

class SuccessorFile {
  public:
    /// Deletes what killed writers of this user have left for the file `path`: every regular file with a name
    /// as above that has the permission bits 0200 and only one name (hard link), belongs to the effective
    /// user and is not locked. All other files stay. Failures are ignored.
    static void removeLeftovers(const std::string& path);

    enum class Outcome {
        kReplaced,  ///< the file has the new content
        kRefused,   ///< not possible, or users could notice the replacement; nothing has changed
        kFailed     ///< no space for the new content, or a write error; nothing has changed
    };

    /// Replaces the regular file `path`, whose status is `old`, by a new file with the content `text` and the
    /// same owner, group and permissions. Returns kRefused if the new file would get an access control list
    /// or extended attributes from its folder. Any thread; several processes can write at the same time.
    static Outcome replace(const std::string& path, const struct stat& old, const std::string& text);

    SuccessorFile(const SuccessorFile&) = delete;
    SuccessorFile& operator=(const SuccessorFile&) = delete;

  private:
    explicit SuccessorFile(const std::string& oldPath);
    ~SuccessorFile();

    bool create(const std::string& path);
    bool hasSameOwners(const struct stat& old) const;
    bool copyMode(const struct stat& old) const;
    bool write(const std::string& text) const;

    std::string path_;
    int descriptor_ = -1;
    bool hasTakenOver_ = false;
    bool hasNoRoom_ = false;
};

/// Returns whether the file has an access control list or extended attributes.
bool hasExtendedAttributes(const std::string& path);

}  // namespace dovrel
