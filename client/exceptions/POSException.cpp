#include "client/exceptions/POSException.h"

namespace dovrel {

uint32_t POSException::getTypeCode() const {
    return exceptionTypeCode::kPOSException;
}

uint32_t POSClassNotFoundException::getTypeCode() const {
    return exceptionTypeCode::kPOSClassNotFound;
}

uint32_t POSObjectNotFoundException::getTypeCode() const {
    return exceptionTypeCode::kPOSObjectNotFound;
}

uint32_t POSObjectInstantiationException::getTypeCode() const {
    return exceptionTypeCode::kPOSObjectInstantiation;
}

uint32_t POSMethodNotFoundException::getTypeCode() const {
    return exceptionTypeCode::kPOSMethodNotFound;
}

uint32_t POSMethodExecutionException::getTypeCode() const {
    return exceptionTypeCode::kPOSMethodExecution;
}

uint32_t POSParameterFormatException::getTypeCode() const {
    return exceptionTypeCode::kPOSParameterFormat;
}

uint32_t POSRegistrationException::getTypeCode() const {
    return exceptionTypeCode::kPOSRegistration;
}

uint32_t POSClassPackageNotProcessedException::getTypeCode() const {
    return exceptionTypeCode::kPOSClassPackageNotProcessed;
}

uint32_t POSApplicationNotRegisteredException::getTypeCode() const {
    return exceptionTypeCode::kPOSApplicationNotRegistered;
}

uint32_t POSLibraryNotFoundException::getTypeCode() const {
    return exceptionTypeCode::kPOSLibraryNotFound;
}

uint32_t POSClassPackageNotFoundException::getTypeCode() const {
    return exceptionTypeCode::kPOSClassPackageNotFound;
}

uint32_t POSExecuterReturnedErrorCodeException::getTypeCode() const {
    return exceptionTypeCode::kPOSExecuterReturnedErrorCode;
}

uint32_t POSCommandNotExecutedException::getTypeCode() const {
    return exceptionTypeCode::kPOSCommandNotExecuted;
}

}  // namespace dovrel
