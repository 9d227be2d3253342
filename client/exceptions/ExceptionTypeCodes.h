// The type codes of the exception classes, all in one place.
//
// The server's replies name a failure by the codes from 23 to 146. So these codes never change, and the gaps
// between them stay unused.
#pragma once

#include <cstdint>

namespace dovrel::exceptionTypeCode {

constexpr uint32_t kCPPException = 0;

constexpr uint32_t kStructuredReaderNotInitialized = 2;
constexpr uint32_t kPartNotFound = 3;
constexpr uint32_t kStructuredWriterNotInitialized = 4;
constexpr uint32_t kStructuredWriteFailed = 5;

constexpr uint32_t kPOSException = 23;
constexpr uint32_t kPOSClassNotFound = 24;
constexpr uint32_t kPOSObjectNotFound = 25;
constexpr uint32_t kPOSObjectInstantiation = 26;
constexpr uint32_t kPOSMethodNotFound = 27;
constexpr uint32_t kPOSMethodExecution = 28;
constexpr uint32_t kPOSParameterFormat = 30;
constexpr uint32_t kPOSRegistration = 32;
constexpr uint32_t kPOSClassPackageNotProcessed = 33;
constexpr uint32_t kPOSApplicationNotRegistered = 34;
constexpr uint32_t kPOSLibraryNotFound = 36;
constexpr uint32_t kPOSClassPackageNotFound = 43;
constexpr uint32_t kPOSExecuterReturnedErrorCode = 145;
constexpr uint32_t kPOSCommandNotExecuted = 146;

constexpr uint32_t kSystemException = 44;

}  // namespace dovrel::exceptionTypeCode
