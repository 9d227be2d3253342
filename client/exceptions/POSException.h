// POSException and its subclasses: the failures that the server reports.
//
// Each class differs from its base in nothing but its type code, which is also the error code by which the
// server names the failure (ExceptionTypeCodes.h). newPOSExceptionForCode finds the class for a code.
#pragma once

#include "client/exceptions/CPPException.h"

namespace dovrel {

/// A failure of the server or of the way to it that no class below names.
class POSException : public CPPException {
  public:
    /// The message may be null; nobody who throws gives a code other than 0.
    explicit POSException(const char* message, int64_t code = 0) : CPPException(message, code) {}

    uint32_t getTypeCode() const override;
};

/// The class or its driver is not known to the server.
class POSClassNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The server has no object of that identifier.
class POSObjectNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The server could not make the object.
class POSObjectInstantiationException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The object's class has no method of that name.
class POSMethodNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The method ran and failed.
class POSMethodExecutionException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The bytes of the parameters are not what the callee expects.
class POSParameterFormatException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The server did not accept the application; the one failure after which the user may retry.
class POSRegistrationException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// A package of classes could not be taken in.
class POSClassPackageNotProcessedException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The session identifier belongs to no registered application.
class POSApplicationNotRegisteredException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// A library is missing. Never made from a server's answer.
class POSLibraryNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// A package of classes is missing.
class POSClassPackageNotFoundException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// An executer answered with an error code of its own.
class POSExecuterReturnedErrorCodeException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

/// The command was refused or not understood.
class POSCommandNotExecutedException : public POSException {
  public:
    using POSException::POSException;
    uint32_t getTypeCode() const override;
};

}  // namespace dovrel
