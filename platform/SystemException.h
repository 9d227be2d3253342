// SystemException: the failure of a call to the operating system.
#pragma once

#include <cstdint>

#include "client/exceptions/CPPException.h"

namespace dovrel {

class SystemException : public CPPException {
  public:
    /// The message is "System error: " and the code; the location (the detail text) stays "???".
    explicit SystemException(int32_t errorCode);

    /// The same with a location.
    SystemException(const char* location, int32_t errorCode);

    /// A message of the caller's own; the operating system's error code is 0.
    SystemException(const char* location, const char* message, int64_t code);

    uint32_t getTypeCode() const override;

    /// The operating system's status, 0 when it is not known.
    virtual int32_t getErrorCode() const;

    /// Replaces the operating system's status, and the message by "System error: " and the code.
    virtual void setErrorCode(int32_t errorCode);

  private:
    int32_t errorCode_ = 0;
};

}  // namespace dovrel
