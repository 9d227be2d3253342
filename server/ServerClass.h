// The classes that the server offers, and the objects made of them.
//
// A new class is one file in server/classes/: an ordinary C++ class whose methods take and give bytes, and
// one line that names them (BuiltInClass.h). Nothing else has to be touched.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "server/Answer.h"

namespace merrowd {

/// An object of one application. Destroyed when it is deleted or its application goes.
class ServerObject {
  public:
    virtual ~ServerObject() = default;
    ServerObject(const ServerObject&) = delete;
    ServerObject& operator=(const ServerObject&) = delete;

    /// Runs a method, one of those that its class lists. The argument is the callee's to use up. Throws
    /// Refusal; any other exception is answered as error 28 and logged.
    virtual Answer call(const std::string& method, CPPByteArray argument) = 0;

  protected:
    ServerObject() = default;
};

class ServerClass {
  public:
    virtual ~ServerClass() = default;
    ServerClass(const ServerClass&) = delete;
    ServerClass& operator=(const ServerClass&) = delete;

    virtual std::string name() const = 0;

    /// What clients ask for the class by: the name padded with zero bytes, where nothing else is said.
    virtual Identifier identifier() const { return identifierOfName(name()); }

    /// In the order in which they are to be shown.
    virtual std::vector<std::string> methods() const = 0;

    /// Makes an object, never null; `message` may be filled for the user. Throws Refusal; any other exception is
    /// answered as error 26 and logged.
    virtual std::unique_ptr<ServerObject> instantiate(UserMessage& message) const = 0;

    /// The name padded with zero bytes to 16; what is longer is cut.
    static Identifier identifierOfName(const std::string& name);

  protected:
    ServerClass() = default;
};

}  // namespace merrowd
