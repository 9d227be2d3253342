// BuiltInClass: makes a server class from an ordinary C++ class. Each class has its own file in the
// folder server/classes/:
//
//     class Greeter {
//       public:
//         CPPByteArray greet(CPPByteArray name);
//     };
//     const BuiltInClass<Greeter> greeter("Greeter", {{"greet", &Greeter::greet}});
//
// Each server object has its own Greeter. A constructor Greeter(const Caller&, UserMessage&) sees the application
// and can set a message for the user; without it the default constructor is used. A method throws Refusal if it cannot do its work. Any other
// exception that a method or constructor throws becomes an error reply and a line in the log (ServerClass.h).
#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "server/ClassRegistry.h"
#include "server/ServerClass.h"

namespace merrowd {

template <typename Object>
class BuiltInClass : public ServerClass {
  public:
    /// A method takes the argument and returns the result. If it takes the caller as well, it sees the
    /// application and can send a message for the user.
    struct Method {
        using Simple = CPPByteArray (Object::*)(CPPByteArray argument);
        using Full = MethodResult (Object::*)(CPPByteArray argument, const Caller& caller);

        Method(const char* itsName, Simple function) : name(itsName), simple(function) {}
        Method(const char* itsName, Full function) : name(itsName), full(function) {}

        const char* name;
        Simple simple = nullptr;
        Full full = nullptr;
    };

    /// Adds the class to every ClassRegistry. Objects of this type must therefore exist as long as the process.
    BuiltInClass(std::string name, std::vector<Method> methods)
        : name_(std::move(name)), methods_(std::move(methods)) {
        ClassRegistry::builtInClasses().push_back(this);
    }

    std::string name() const override { return name_; }

    std::vector<std::string> methods() const override {
        std::vector<std::string> names;
        for (const Method& method : methods_)
            names.emplace_back(method.name);
        return names;
    }

    bool hasMethod(const std::string& name) const override {
        for (const Method& method : methods_) {
            if (name == method.name) return true;
        }
        return false;
    }

    std::unique_ptr<ServerObject> instantiate(const Caller& caller, UserMessage& message) const override {
        if constexpr (std::is_constructible_v<Object, const Caller&, UserMessage&>) {
            return std::make_unique<Instance>(methods_, caller, message);
        } else {
            return std::make_unique<Instance>(methods_);
        }
    }

  private:
    class Instance : public ServerObject {
      public:
        template <class... Arguments>
        explicit Instance(const std::vector<Method>& methods, Arguments&... arguments)
            : methods_(methods), object_(arguments...) {}

        MethodResult call(const std::string& name, CPPByteArray argument, const Caller& caller) override {
            for (const Method& method : methods_) {
                if (name != method.name) continue;
                if (method.full != nullptr) return (object_.*method.full)(std::move(argument), caller);
                return MethodResult((object_.*method.simple)(std::move(argument)));
            }
            throw Refusal{refusalCode::kPOSMethodNotFound, "no method " + name};
        }

      private:
        const std::vector<Method>& methods_;
        Object object_;
    };

    const std::string name_;
    const std::vector<Method> methods_;
};

}  // namespace merrowd
