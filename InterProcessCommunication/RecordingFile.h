// RecordingFile: appends exchanges to a recording (RecordingFormat.h).
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class POSTransferObj;

/// When an exchange began, and how long it took.
struct ExchangeTime {
    std::chrono::system_clock::time_point begin;
    std::chrono::microseconds duration{0};
};

/// Several hosts may append to the same recording: each exchange is written at its end, with one call of
/// write(). Not thread-safe.
///
/// No function throws or blocks. If something cannot be written, the recording of this object ends there, so
/// that a recording has no gap, and the trace says so.
class RecordingFile {
  public:
    /// The file is created when the first exchange is added. Only its owner may read and write a new file. An
    /// existing file is appended to. Symbolic links are not followed, and only regular files are written.
    explicit RecordingFile(std::string path) : path_(std::move(path)) {}
    RecordingFile(const RecordingFile&) = delete;
    RecordingFile& operator=(const RecordingFile&) = delete;
    ~RecordingFile();

    /// Appends an exchange that brought a reply.
    void addReply(const ExchangeTime& time, const POSTransferObj& request,
                  const POSTransferObj& reply) noexcept;

    /// Appends an exchange that threw an exception with that message.
    void addFailure(const ExchangeTime& time, const POSTransferObj& request, const char* message) noexcept;

  private:
    template <typename Compose>
    void add(const Compose& compose) noexcept;
    void appendBytes(std::string& text, const char* key, const char* placeKey, const CPPByteArray& bytes);
    void append(int& descriptor, const std::string& path, const void* bytes, size_t size);
    void end(const char* reason) noexcept;

    const std::string path_;
    int text_ = -1;
    int payloads_ = -1;
    bool hasEnded_ = false;
};

}  // namespace dovrel
