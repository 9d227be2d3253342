#include "InterProcessCommunication/RecordingFile.h"

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <limits>
#include <memory>
#include <new>

#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/RecordingFormat.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "platform/files/FileWriting.h"
#include "platform/files/PrivateFile.h"
#include "platform/text/ReadableText.h"
#include "platform/trace/FailureNotes.h"
#include "settings/LineGrammar.h"
#include "settings/LogFileWriter.h"

namespace dovrel {

namespace {

constexpr char kRequestMark[] = "    > ";
constexpr char kReplyMark[] = "    < ";
constexpr char kOutOfMemory[] = "out of memory";

/// Thrown by value when a file cannot be written. It does not leave this file.
struct WriteFailure {
    std::string path;
};

std::string utcText(std::chrono::system_clock::time_point time) {
    // Numbers with 53 bits: 32-bit programs on macOS have no division of integers with 64 bits.
    constexpr double kMicrosecondsPerSecond = 1e6;
    const std::chrono::duration<double, std::micro> passed = time.time_since_epoch();
    const auto seconds = static_cast<std::time_t>(passed.count() / kMicrosecondsPerSecond);
    const auto fraction =
        static_cast<int32_t>(passed.count() - static_cast<double>(seconds) * kMicrosecondsPerSecond);
    std::tm utc = {};
    gmtime_r(&seconds, &utc);
    char text[sizeof "2026-11-22T12:43:17"] = "";
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
    return std::string(text) + "." + std::to_string(1000000 + fraction).substr(1) + "Z";
}

int32_t toEntry(std::chrono::microseconds duration) {
    constexpr int64_t most = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::min<int64_t>(duration.count(), most));
}

// Does not change the request, which the forwarder may be asked to send again.
CPPByteArray copyBytes(const POSTransferObj& object) {
    const ByteBlock block = object.copyWireForm();
    CPPByteArray bytes;
    bytes.setOrThrow(block.data.get(), block.length);
    return bytes;
}

// Begins with an empty line, so that the exchange is complete even if another host's last line is not.
void appendHead(std::string& text, const ExchangeTime& time, const CPPByteArray& request) {
    text += kLineFeed;
    LogFileWriter entries(text);
    entries.writeString(recording::kSectionKey, readCommandName(request));
    entries.writeInt(recording::kFormatKey, recording::kFormatVersion);
    entries.writeString(recording::kTimeKey, utcText(time.begin));
    entries.writeInt(recording::kProcessKey, getpid());
    entries.writeInt(recording::kMicrosecondsKey, toEntry(time.duration));
}

void appendFailedStep(std::string& text) {
    const std::string step = FailureNotes::lastFailedStep();
    if (!step.empty()) LogFileWriter(text).writeString(recording::kFailedStepKey, step);
}

}  // namespace

RecordingFile::~RecordingFile() {
    for (const int descriptor : {text_, payloads_})
        if (descriptor >= 0) close(descriptor);
}

void RecordingFile::addReply(const ExchangeTime& time, const POSTransferObj& request,
                             const POSTransferObj& reply) noexcept {
    add([&](std::string& text) {
        const CPPByteArray sent = copyBytes(request);
        const CPPByteArray& received = reply.bytes();
        appendHead(text, time, sent);
        // A reply without bytes means that the last of several attempts failed.
        if (received.getSize() == 0) appendFailedStep(text);
        text += transferObjText(sent, kRequestMark) + transferObjText(received, kReplyMark);
        appendBytes(text, recording::kRequestKey, recording::kRequestPlaceKey, sent);
        appendBytes(text, recording::kReplyKey, recording::kReplyPlaceKey, received);
    });
}

void RecordingFile::addFailure(const ExchangeTime& time, const POSTransferObj& request,
                               const char* message) noexcept {
    add([&](std::string& text) {
        const CPPByteArray sent = copyBytes(request);
        appendHead(text, time, sent);
        LogFileWriter(text).writeString(recording::kFailureKey,
                                        readableText(message != nullptr ? message : ""));
        appendFailedStep(text);
        text += transferObjText(sent, kRequestMark);
        appendBytes(text, recording::kRequestKey, recording::kRequestPlaceKey, sent);
    });
}

// Catches everything: the exchange has its result, and the host must receive it.
template <typename Compose>
void RecordingFile::add(const Compose& compose) noexcept {
    if (hasEnded_) return;
    try {
        std::string text;
        compose(text);
        LogFileWriter(text).writeInt(recording::kEndKey, recording::kEndValue);
        append(text_, path_, text.data(), text.size());
    } catch (const WriteFailure& failure) {
        end(failure.path.c_str());
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        end(kOutOfMemory);
    } catch (const std::bad_alloc&) {
        end(kOutOfMemory);
    } catch (...) {
        end(path_.c_str());
    }
}

void RecordingFile::appendBytes(std::string& text, const char* key, const char* placeKey,
                                const CPPByteArray& bytes) {
    LogFileWriter entries(text);
    const uint32_t size = bytes.getSize();
    if (size <= recording::kMostBytesInText) return entries.writeBinary(key, bytes);
    append(payloads_, recording::payloadPath(path_), bytes.data(), size);
    // Appending moved the position to the end of these bytes, wherever other hosts have written.
    const off_t end = lseek(payloads_, 0, SEEK_CUR);
    entries.writeString(placeKey,
                        std::to_string(static_cast<uint64_t>(end) - size) + " " + std::to_string(size));
}

void RecordingFile::append(int& descriptor, const std::string& path, const void* bytes, size_t size) {
    if (descriptor < 0) descriptor = openPrivateFile(path);
    if (descriptor < 0 || !appendAtOnce(descriptor, bytes, size)) throw WriteFailure{path};
}

void RecordingFile::end(const char* reason) noexcept {
    hasEnded_ = true;
    Trace::write(TraceArea::kExchange, TraceLevel::kFailures,
                 [&] { return std::string("the recording ends, because it cannot be written: ") + reason; });
}

}  // namespace dovrel
