// POSException and its derived classes: the failures that the server reports.
//
// The classes differ only in their type code, which is also the error code in the server's reply
// (ExceptionTypeCodes.h). newPOSExceptionForCode creates the exception for an error code.
#pragma once

#include "client/exceptions/CPPException.h"

namespace dovrel {

/// A failure of the server, or of the connection to it, for which there is no class below.
class POSException : public CPPException {
  public:
    /// The message may be null. The library never passes a code other than 0.
    explicit POSException(const char* message, int64_t code = 0) : CPPException(message, code) {}

    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSException; }
};

/// The server does not know the class or its driver.
class POSClassNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSClassNotFound; }
};

/// The server has no object with that identifier.
class POSObjectNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSObjectNotFound; }
};

/// The server could not create the object.
class POSObjectInstantiationException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSObjectInstantiation; }
};

/// The object's class has no method with that name.
class POSMethodNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSMethodNotFound; }
};

/// The method ran and failed.
class POSMethodExecutionException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSMethodExecution; }
};

/// The parameter bytes do not have the expected format.
class POSParameterFormatException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSParameterFormat; }
};

/// The server refused to register the application. Only after this failure may the user retry.
class POSRegistrationException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSRegistration; }
};

/// The server could not process a class package.
class POSClassPackageNotProcessedException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSClassPackageNotProcessed; }
};

/// No registered application has the session identifier.
class POSApplicationNotRegisteredException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSApplicationNotRegistered; }
};

/// A library is missing. Never thrown because of a server's reply.
class POSLibraryNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSLibraryNotFound; }
};

/// A class package is missing.
class POSClassPackageNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSClassPackageNotFound; }
};

/// An executer returned an error code of its own.
class POSExecuterReturnedErrorCodeException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSExecuterReturnedErrorCode; }
};

/// The server refused the command or did not understand it.
class POSCommandNotExecutedException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override { return exceptionTypeCode::kPOSCommandNotExecuted; }
};

/// Returns a new exception of the class that belongs to the error code of a server's reply. It has the code 0
/// and a copy of the message, which may be null. The caller owns the exception, and normally throws it.
///
/// Returns null if the code belongs to no class, and also for 36, 0 and 3. A reply with 36 (missing library)
/// never leads to an exception. For 0 and 3 the code that checks the reply chooses the exception itself.
CPPException* newPOSExceptionForCode(uint32_t code, const char* message);

}  // namespace dovrel
