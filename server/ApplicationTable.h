// The applications that are registered with the server, and their objects.
//
// An object belongs to the application that created it; no other application reaches it. Application
// identifiers count up from the first one that the constructor is given; object identifiers are unique in
// this server and say nothing to clients.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "server/ServerClass.h"

namespace merrowd {

/// An object with the class that made it, which must not go before the object does.
struct ObjectRecord {
    std::shared_ptr<const ServerClass> ofClass;
    std::unique_ptr<ServerObject> object;
};

struct Application {
    std::string name;
    std::vector<Identifier> classes;
    pid_t process = 0;  ///< 0: not known
    std::map<Identifier, ObjectRecord> objects;
};

class ApplicationTable {
  public:
    // Bounds that no host reaches by accident; they keep one that runs wild from taking all memory.
    static constexpr size_t kMostApplications = 1024;
    static constexpr size_t kMostObjects = 65536;  ///< of one application

    explicit ApplicationTable(uint32_t firstApplication) : nextApplication_(firstApplication) {}

    /// Answers the identifier. Refuses (registration) when there are too many.
    uint32_t add(Application application);

    /// Refuses (application not registered) an identifier that names none.
    Application& find(uint32_t id);

    /// Forgets the application and destroys its objects. Refuses as find does.
    void remove(uint32_t id);

    /// Answers the new object's identifier. Refuses (instantiation) when there are too many.
    Identifier addObject(uint32_t applicationId, ObjectRecord record);

    /// Refuse (object not found) an identifier that names no object of that application.
    ObjectRecord& findObject(uint32_t applicationId, const Identifier& id);
    void removeObject(uint32_t applicationId, const Identifier& id);

    /// Forgets every application whose process is known and does not run any more.
    void removeGone();

    size_t size() const { return applications_.size(); }
    size_t objectCount() const;

  private:
    uint32_t nextApplication_;
    uint32_t nextObject_ = 1;
    std::map<uint32_t, Application> applications_;
};

}  // namespace merrowd
