// SystemException: a call to the operating system failed.
#pragma once

#include <cstdint>

#include "client/exceptions/CPPException.h"

namespace dovrel {

class SystemException : public CPPException {
  public:
    /// Sets the message to "System error: " followed by the code. The location (the detail text) stays "???".
    explicit SystemException(int32_t errorCode);

    /// As above, and sets the location.
    SystemException(const char* location, int32_t errorCode);

    /// Sets the location, the message and the exception's own code. The operating system's status is 0.
    SystemException(const char* location, const char* message, int64_t code);

    uint32_t getTypeCode() const override;

    /// Returns the operating system's status, or 0 if it is not known.
    virtual int32_t getErrorCode() const;

    /// Replaces the operating system's status. Replaces the message by "System error: " followed by the code.
    virtual void setErrorCode(int32_t errorCode);

  private:
    int32_t errorCode_ = 0;
};

}  // namespace dovrel
