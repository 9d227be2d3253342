#include "platform/SystemException.h"

#include <string>

namespace dovrel {

SystemException::SystemException(int32_t errorCode) {
    SystemException::setErrorCode(errorCode);
}

SystemException::SystemException(const char* location, int32_t errorCode) : SystemException(errorCode) {
    setDetail(location);
}

SystemException::SystemException(const char* location, const char* message, int64_t code)
    : CPPException(message, code) {
    setDetail(location);
}

uint32_t SystemException::getTypeCode() const {
    return exceptionTypeCode::kSystemException;
}

int32_t SystemException::getErrorCode() const {
    return errorCode_;
}

void SystemException::setErrorCode(int32_t errorCode) {
    errorCode_ = errorCode;
    setMessage(("System error: " + std::to_string(errorCode)).c_str());
}

}  // namespace dovrel
