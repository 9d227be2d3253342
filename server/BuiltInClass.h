// BuiltInClass: makes a server class from an ordinary C++ class. Each class has its own file in the
// folder server/classes/:
//
//     class Greeter {
//       public:
//         CPPByteArray greet(CPPByteArray name);
//     };
//     const BuiltInClass<Greeter> greeter("Greeter", {{"greet", &Greeter::greet}});
//
// Each server object has its own Greeter. A method throws Refusal if it cannot do its work. Any other
// exception that a method or constructor throws becomes an error reply and a line in the log (ServerClass.h).
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "server/ClassRegistry.h"
#include "server/ServerClass.h"

namespace merrowd {

template <typename Object>
class BuiltInClass : public ServerClass {
  public:
    struct Method {
        const char* name;
        CPPByteArray (Object::*function)(CPPByteArray argument);
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

    std::unique_ptr<ServerObject> instantiate(UserMessage&) const override {
        return std::make_unique<Instance>(methods_);
    }

  private:
    class Instance : public ServerObject {
      public:
        explicit Instance(const std::vector<Method>& methods) : methods_(methods) {}

        MethodResult call(const std::string& name, CPPByteArray argument) override {
            for (const Method& method : methods_) {
                if (name == method.name) return MethodResult((object_.*method.function)(std::move(argument)));
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
