#include "client/exceptions/ExceptionTypeNames.h"

#include "client/exceptions/ExceptionTypeCodes.h"

namespace dovrel {

const char* exceptionTypeName(uint32_t typeCode) {
    using namespace exceptionTypeCode;
    switch (typeCode) {
        case kCPPException:
            return "no type of its own";
        case kStructuredReaderNotInitialized:
            return "bytes that are not a structured block";
        case kPartNotFound:
            return "missing field";
        case kStructuredWriterNotInitialized:
            return "writer without a target";
        case kStructuredWriteFailed:
            return "data that do not fit into a block";
        case kSystemException:
            return "call of the operating system failed";
        default:
            return serverErrorName(typeCode);
    }
}

const char* serverErrorName(uint32_t errorCode) {
    using namespace exceptionTypeCode;
    constexpr uint32_t kGeneralError = 0;
    constexpr uint32_t kNoValidInterface = 3;
    switch (errorCode) {
        case kGeneralError:
            return "no code of its own";
        case kNoValidInterface:
            return "unknown interface, format or command";
        case kPOSException:
            return "server or connection failed";
        case kPOSClassNotFound:
            return "class or driver not found";
        case kPOSObjectNotFound:
            return "object not found";
        case kPOSObjectInstantiation:
            return "object not instantiated";
        case kPOSMethodNotFound:
            return "method not found";
        case kPOSMethodExecution:
            return "method failed";
        case kPOSParameterFormat:
            return "parameters in the wrong form";
        case kPOSRegistration:
            return "registration refused";
        case kPOSClassPackageNotProcessed:
            return "class package not processed";
        case kPOSApplicationNotRegistered:
            return "application not registered";
        case kPOSLibraryNotFound:
            return "library not found";
        case kPOSClassPackageNotFound:
            return "class package not found";
        case kPOSExecuterReturnedErrorCode:
            return "executer returned an error";
        case kPOSCommandNotExecuted:
            return "command not executed";
        default:
            return nullptr;
    }
}

}  // namespace dovrel
