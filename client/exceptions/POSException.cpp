#include "client/exceptions/POSException.h"

namespace dovrel {

CPPException* newPOSExceptionForCode(uint32_t code, const char* message) {
    using namespace exceptionTypeCode;
    switch (code) {
        case kPOSException:
            return new POSException(message);
        case kPOSClassNotFound:
            return new POSClassNotFoundException(message);
        case kPOSObjectNotFound:
            return new POSObjectNotFoundException(message);
        case kPOSObjectInstantiation:
            return new POSObjectInstantiationException(message);
        case kPOSMethodNotFound:
            return new POSMethodNotFoundException(message);
        case kPOSMethodExecution:
            return new POSMethodExecutionException(message);
        case kPOSParameterFormat:
            return new POSParameterFormatException(message);
        case kPOSRegistration:
            return new POSRegistrationException(message);
        case kPOSClassPackageNotProcessed:
            return new POSClassPackageNotProcessedException(message);
        case kPOSApplicationNotRegistered:
            return new POSApplicationNotRegisteredException(message);
        case kPOSClassPackageNotFound:
            return new POSClassPackageNotFoundException(message);
        case kPOSExecuterReturnedErrorCode:
            return new POSExecuterReturnedErrorCodeException(message);
        case kPOSCommandNotExecuted:
            return new POSCommandNotExecutedException(message);
        default:
            return nullptr;
    }
}

}  // namespace dovrel
