// A file beside another one that takes over its name once its content is complete.
//
// It is named after the other file, with ".new0" to ".new9" at the end, and locked as long as its writer
// lives. So a file of such a name that is not locked is what a killed writer has left.
#pragma once

#include <sys/stat.h>

#include <string>

namespace dovrel {

class SuccessorFile {
  public:
    /// Deletes what killed writers have left beside the file `path`: every plain file of such a name that can
    /// be opened and is not locked. Failures are ignored.
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
    bool takeAttributes(const struct stat& old) const;
    bool write(const std::string& text) const;

    std::string path_;
    int descriptor_ = -1;
    bool hasTakenOver_ = false;
    bool hasNoRoom_ = false;
};

/// Whether the file has an access control list or extended attributes of its own.
bool hasExtendedAttributes(const std::string& path);

}  // namespace dovrel
