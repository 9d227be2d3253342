// All classes that a server knows at a time: the built-in ones, and those that its settings describe.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "server/ServerClass.h"

namespace merrowd {

class ClassRegistry {
  public:
    /// Knows the built-in classes.
    ClassRegistry() = default;

    /// Takes a described class in, in place of a class with the same identifier, a built-in one too. Objects
    /// of the class that is replaced live on as they are.
    void add(std::shared_ptr<const ServerClass> described);

    /// Null where no class has that identifier. The result keeps the class alive.
    std::shared_ptr<const ServerClass> find(const Identifier& identifier) const;

    /// The names of all classes, each once, in alphabetical order.
    std::vector<std::string> names() const;

    /// The classes that are part of the program. They enter themselves before main runs (BuiltInClass.h).
    static std::vector<const ServerClass*>& builtInClasses();

  private:
    std::vector<std::shared_ptr<const ServerClass>> described_;
};

}  // namespace merrowd
