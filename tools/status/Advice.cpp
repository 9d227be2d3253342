#include "tools/status/Advice.h"

#include <CoreServices/CoreServices.h>

#include "client/exceptions/ExceptionTypeCodes.h"

namespace dovrel::tools {

std::string statusAdvice(int32_t status) {
    switch (status) {
        case noErr:
            return "Nothing: the operation succeeded.";
        case procNotFound:
            return "No server of this user and this root runs. The next call launches it. \"dovrel doctor\" "
                   "shows "
                   "which root and which user are meant.";
        case connectionInvalid:
            return "The server ended before it answered. The next call launches it again; objects of the old "
                   "server "
                   "are gone. If this happens again, see the server's log (\"dovrel server log\").";
        case errAETimeout:
            return "The server did not answer in time. It may be busy, stopped or hanging. \"dovrel server "
                   "status\" "
                   "shows whether it answers, \"dovrel server stop --force\" ends it.";
        case errAEEventNotHandled:
            return "The process that answered is not a complete server. \"dovrel doctor\" shows which one it "
                   "is.";
        case errAEDescNotFound:
            return "The server's reply has no content. \"dovrel doctor\" compares the versions of library "
                   "and server.";
        case fnfErr:
        case dirNFErr:
        case kLSApplicationNotFoundErr:
            return "A file or a folder is missing. \"dovrel doctor\" shows which parts are installed.";
        case kLSNoExecutableErr:
        case kLSExecutableIncorrectFormat:
        case kLSDataUnavailableErr:
        case kLSUnknownErr:
            return "The server is not installed completely, or not for this processor. Install it again.";
        case kLSNoLaunchPermissionErr:
        case permErr:
        case wPrErr:
        case afpAccessDenied:
            return "A right is missing. \"dovrel doctor\" checks the rights of the folders and of the "
                   "server.";
        case dskFulErr:
            return "The disk is full. Free some space and try again.";
        case memFullErr:
            return "Memory has run out. End other programs, or send less data.";
        case userCanceledErr:
            return "Nothing: the user cancelled the operation.";
        default:
            break;
    }
    if (status > kPOSIXErrorBase)
        return "This is an error number of the operating system; \"man 3 errno\" lists them.";
    return "The platform's documentation describes the name. POS_TRACE=all shows in which step it occurs.";
}

std::string errorCodeAdvice(uint32_t errorCode) {
    using namespace exceptionTypeCode;
    constexpr uint32_t kNoValidInterface = 3;
    switch (errorCode) {
        case kNoValidInterface:
            return "The server does not know the request. Library and server do not belong together, or the "
                   "host "
                   "sent an unknown command. \"dovrel doctor\" compares the versions.";
        case kPOSClassNotFound:
            return "The server has no such class. \"dovrel info 2\" lists the classes of the development "
                   "server.";
        case kPOSObjectNotFound:
            return "The object was deleted, or the server has been restarted. The host must create it again.";
        case kPOSObjectInstantiation:
            return "The class could not create the object. The message contains the reason.";
        case kPOSMethodNotFound:
            return "The class has no method of this name. Names are compared byte by byte.";
        case kPOSMethodExecution:
            return "The method itself failed. The message contains the reason.";
        case kPOSParameterFormat:
            return "The parameters do not have the form that the method or the command expects.";
        case kPOSRegistration:
            return "The server takes no further application now. Retry repeats the registration.";
        case kPOSApplicationNotRegistered:
            return "The server does not know the application, normally because it has been restarted. The "
                   "host must "
                   "register again.";
        case kPOSLibraryNotFound:
            return "A library that the server needs is missing. Install the server again.";
        case kPOSClassPackageNotProcessed:
        case kPOSClassPackageNotFound:
            return "A class package of the server is missing or damaged. Install it again.";
        case kPOSExecuterReturnedErrorCode:
            return "The executer failed. The message contains its error code.";
        case kPOSCommandNotExecuted:
            return "The server does not know the command or refused it. The message contains the reason.";
        default:
            return "The message in the alert and in the error log contains the reason.";
    }
}

std::string failureTypeAdvice(uint32_t typeCode) {
    using namespace exceptionTypeCode;
    switch (typeCode) {
        case kSystemException:
            return "The entry STATUS in the error log contains the status of the system; look that number up "
                   "as well.";
        case kStructuredReaderNotInitialized:
        case kPartNotFound:
            return "The server's reply cannot be read. \"dovrel doctor\" compares the versions of library "
                   "and server.";
        case kStructuredWriterNotInitialized:
        case kStructuredWriteFailed:
            return "The request could not be written. Send less data; if that does not help, report it with "
                   "the entry "
                   "of the error log.";
        default:
            return "The message in the alert and in the error log contains the reason.";
    }
}

}  // namespace dovrel::tools
