// ClassRegistry: the classes that a server knows: the built-in classes and the classes that its
// settings describe.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "server/ServerClass.h"

namespace merrowd {

class ClassRegistry {
  public:
    /// Contains only the built-in classes.
    ClassRegistry() = default;

    /// Adds a described class. It replaces a class with the same identifier (including a built-in class).
    /// Existing objects of the replaced class do not change.
    void add(std::shared_ptr<const ServerClass> described);

    /// Returns the class with that identifier, or null if there is none. The result keeps the class alive.
    std::shared_ptr<const ServerClass> find(const Identifier& identifier) const;

    /// Returns the names of all classes, each once, in alphabetical order.
    std::vector<std::string> names() const;

    /// The classes that are part of the program. They add themselves before main() runs (BuiltInClass.h).
    static std::vector<const ServerClass*>& builtInClasses();

  private:
    std::vector<std::shared_ptr<const ServerClass>> described_;
};

}  // namespace merrowd
