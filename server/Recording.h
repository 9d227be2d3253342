// Recording: the exchanges that a host has recorded (docs/recordings.md), for replaying them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "serialization/CPPByteArray.h"
#include "settings/Properties.h"

namespace merrowd {

using dovrel::CPPByteArray;

/// The bytes of a request or a reply, or their place in the file of payloads.
struct RecordedBytes {
    CPPByteArray bytes;
    uint64_t offset = 0;
    uint32_t length = 0;  ///< 0 if `bytes` has the bytes
};

struct RecordedExchange {
    RecordedBytes request;
    RecordedBytes reply;
    bool failed = false;  ///< there is no reply, because the exchange threw an exception in the host
};

class Recording {
  public:
    /// Reads the recording in the file. Large payloads stay in their file until they are needed. Each of the
    /// following adds a line to `problems`: a file that cannot be read, and an exchange that is incomplete or
    /// has another format. Such an exchange is left out.
    Recording(const std::string& path, std::vector<std::string>& problems);

    /// As above for the text of the file, which the caller has read. The file of payloads is beside `path`.
    Recording(std::string path, const std::string& text, std::vector<std::string>& problems);

    const std::string& path() const { return path_; }
    const std::vector<RecordedExchange>& exchanges() const { return exchanges_; }

    /// Returns the bytes. Throws a new CPPException that names the file if they cannot be read.
    CPPByteArray read(const RecordedBytes& recorded) const;

  private:
    void addSections(const std::string& text, std::vector<std::string>& problems);
    bool findBytes(const dovrel::Properties& section, const char* key, const char* placeKey,
                   RecordedBytes& found) const;

    const std::string path_;
    std::vector<RecordedExchange> exchanges_;
};

}  // namespace merrowd
