// ServerClass and ServerObject: the classes that the server offers, and the objects of these classes.
//
// A new class is one file in server/classes/. It contains an ordinary C++ class whose methods take and return
// bytes, and one declaration that names the methods (BuiltInClass.h). No other file has to change.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "server/MethodResult.h"

namespace merrowd {

/// The application that creates an object or calls its methods.
struct Caller {
    uint32_t application = 0;  ///< its identifier
    std::string name;
    pid_t process = 0;  ///< 0 if it is not known
};

/// An object of one application. It is destroyed when the client deletes it or when its application is removed.
class ServerObject {
  public:
    virtual ~ServerObject() = default;
    ServerObject(const ServerObject&) = delete;
    ServerObject& operator=(const ServerObject&) = delete;

    /// Runs one of the methods that its class lists, and returns its result. The method may modify
    /// `argument`. Throws Refusal; any other exception is sent to the client as error 28 and logged.
    virtual MethodResult call(const std::string& method, CPPByteArray argument, const Caller& caller) = 0;

  protected:
    ServerObject() = default;
};

class ServerClass {
  public:
    virtual ~ServerClass() = default;
    ServerClass(const ServerClass&) = delete;
    ServerClass& operator=(const ServerClass&) = delete;

    virtual std::string name() const = 0;

    /// Returns the identifier that clients use for the class. By default it is the name padded with zero bytes.
    virtual Identifier identifier() const { return identifierFromName(name()); }

    /// Returns the names of the methods, in the order in which they are shown.
    virtual std::vector<std::string> methods() const = 0;

    /// Returns whether methods() contains the name. Called for every call of a method.
    virtual bool hasMethod(const std::string& name) const;

    /// Makes an object, never null. It may fill `message` for the user. Throws Refusal; any other exception
    /// is sent to the client as error 26 and logged.
    virtual std::unique_ptr<ServerObject> instantiate(const Caller& caller, UserMessage& message) const = 0;

    /// Returns the name padded with zero bytes to 16 bytes. A longer name is truncated.
    static Identifier identifierFromName(const std::string& name);

  protected:
    ServerClass() = default;
};

}  // namespace merrowd
