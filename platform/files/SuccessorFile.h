// A file beside another one that takes over its name once its content is complete.
//
// It is named after the other file, with ".new0" to ".new9" at the end, and locked as long as its writer
// lives. Until its content is complete it has the permission bits 0200, which users do not give to their
// files. So a file of such a name with exactly these bits that is not locked is what a killed writer has left.
//
// It gets the permissions of the other file just before it takes over the name. If the writer is killed
// between these two steps, the complete new content stays under the name of the successor until the user
// deletes it: it can no longer be told from a user's file, and later writers use the next name. The same
// happens to every leftover on a file system that does not keep permission bits.
#pragma once

#include <sys/stat.h>

#include <string>

namespace dovrel {

class SuccessorFile {
  public:
    /// Deletes what killed writers of this user have left beside the file `path`: every plain file of such a
    /// name that has the permission bits 0200 and no other name, belongs to the effective user and is not
    /// locked. All other files stay. Failures are ignored.
    static void removeLeftovers(const std::string& path);

    enum class Outcome {
        kReplaced,  ///< the file has the new content
        kRefused,   ///< there can be no exchange, or it could be noticed; nothing has changed
        kFailed     ///< there is no room for the new content, or it cannot be written; nothing has changed
    };

    /// Replaces the plain file `path`, whose status is `old`, by a new file with the content `text` and the
    /// same owner, group and permissions. Refused if the new file would get an access control list or
    /// extended attributes from its folder. Any thread; writers of several processes do not disturb each
    /// other.
    static Outcome replace(const std::string& path, const struct stat& old, const std::string& text);

    SuccessorFile(const SuccessorFile&) = delete;
    SuccessorFile& operator=(const SuccessorFile&) = delete;

  private:
    explicit SuccessorFile(const std::string& oldPath);
    ~SuccessorFile();

    bool create(const std::string& path);
    bool hasOwnersOf(const struct stat& old) const;
    bool takeMode(const struct stat& old) const;
    bool write(const std::string& text) const;

    std::string path_;
    int descriptor_ = -1;
    bool hasTakenOver_ = false;
    bool hasNoRoom_ = false;
};

/// Whether the file has an access control list or extended attributes of its own.
bool hasExtendedAttributes(const std::string& path);

}  // namespace dovrel
