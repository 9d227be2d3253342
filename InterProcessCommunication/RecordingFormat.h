// The format of a recording: a text in the line grammar (settings/LineGrammar.h), one section for each
// exchange. docs/recordings.md describes it.
#pragma once

#include <string>

namespace dovrel::recording {

/// The key that begins an exchange. Its value is the name of the command.
constexpr char kSectionKey[] = "EXCHANGE";

constexpr char kFormatKey[] = "format";              ///< kFormatVersion
constexpr char kTimeKey[] = "time";                  ///< when the exchange began: 2026-11-22T12:43:17.123456Z
constexpr char kProcessKey[] = "process";            ///< the process ID of the host
constexpr char kMicrosecondsKey[] = "microseconds";  ///< how long the exchange took
constexpr char kFailureKey[] = "failure";            ///< the message of the exception, if there was one
constexpr char kFailedStepKey[] = "failedStep";      ///< the step that failed, with its status

/// The bytes of the request and of the reply. An exchange that threw an exception has no reply.
constexpr char kRequestKey[] = "request";
constexpr char kReplyKey[] = "reply";

/// In place of the bytes, if there are more than kMostBytesInText: "OFFSET LENGTH" in the file of payloads.
constexpr char kRequestPlaceKey[] = "requestPlace";
constexpr char kReplyPlaceKey[] = "replyPlace";

/// The last entry. An exchange without it is not complete: a full disk can cut an exchange anywhere.
constexpr char kEndKey[] = "end";
constexpr int kEndValue = 1;

constexpr int kFormatVersion = 1;
constexpr unsigned kMostBytesInText = 4096;

/// Returns the path of the file of payloads of a recording.
inline std::string payloadPath(const std::string& path) {
    return path + ".payloads";
}

}  // namespace dovrel::recording
