// ApplicationTable: the applications that are registered with the server, and their objects.
//
// An object belongs to the application that created it; other applications cannot use it. Application
// identifiers count up from a first value that the constructor takes. Object identifiers are unique in this
// server and have no meaning for clients.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "server/ServerClass.h"

namespace merrowd {

/// An object and its class. The class is kept alive as long as the object.
struct ObjectRecord {
    std::shared_ptr<const ServerClass> ofClass;
    std::unique_ptr<ServerObject> object;
};

struct Application {
    std::string name;
    std::vector<Identifier> classes;
    pid_t process = 0;  ///< 0 if it is not known
    std::map<Identifier, ObjectRecord> objects;
};

class ApplicationTable {
  public:
    // Limits that no host reaches by accident. They keep a faulty host from using up all memory.
    static constexpr size_t kMostApplications = 1024;
    static constexpr size_t kMostObjects = 65536;  ///< per application

    explicit ApplicationTable(uint32_t firstApplication) : nextApplication_(firstApplication) {}

    /// Adds an application and returns its identifier. Throws Refusal (registration) if there are too many.
    uint32_t add(Application application);

    /// Returns the application. Throws Refusal (application not registered) if the identifier is unknown.
    Application& find(uint32_t id);

    bool contains(uint32_t id) const { return applications_.count(id) != 0; }

    /// Removes the application and destroys its objects. Throws as find() does.
    void remove(uint32_t id);

    /// Adds an object and returns its identifier. Throws Refusal (instantiation) if the application has too
    /// many objects.
    Identifier addObject(uint32_t applicationId, ObjectRecord record);

    /// Find or remove an object. Throw Refusal (object not found) if the application has no object with
    /// that identifier.
    ObjectRecord& findObject(uint32_t applicationId, const Identifier& id);
    void removeObject(uint32_t applicationId, const Identifier& id);

    /// Removes every application whose process is known and has ended.
    void removeGone();

    size_t size() const { return applications_.size(); }
    size_t objectCount() const;

  private:
    uint32_t nextApplication_;
    uint32_t nextObject_ = 1;
    std::map<uint32_t, Application> applications_;
};

}  // namespace merrowd
