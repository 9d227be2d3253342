// DescribedClass: a class without code, described by a section of the settings, so that the author of a host can
// imitate the classes of a product. docs/development-server.md describes the keys.
//
//     //CLASS                 the name, up to 16 characters; it may be longer if there is an identifier
//     STR:Scanner
//     //methods               the names, separated by commas
//     STR:scan, eject
//     //scan.answer           the method's result
//     STR:page 1
//
// "instantiate" in place of a method's name describes the creation of objects, which has no result.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "server/Behaviour.h"
#include "server/BehaviourReader.h"
#include "server/ServerClass.h"
#include "server/ServerProcess.h"
#include "server/SettingsText.h"

namespace merrowd {

class DescribedClass : public ServerClass {
  public:
    /// The key at the beginning of a class's section.
    static constexpr char kSectionKey[] = "CLASS";

    /// Stands for the creation of objects in place of a method's name. No method can have this name.
    static constexpr char kInstantiate[] = "instantiate";

    /// Makes a class from its section. Returns null if the section has no usable name or identifier. Other
    /// wrong entries are ignored. Each problem adds a line to `problems`. The class calls `process` for its
    /// delays, so `process` must outlive the class.
    static std::shared_ptr<const ServerClass> fromSection(const SettingsSection& section,
                                                          ServerProcess& process,
                                                          std::vector<std::string>& problems);

    std::string name() const override { return name_; }
    Identifier identifier() const override { return identifier_; }
    std::vector<std::string> methods() const override { return methods_; }
    std::unique_ptr<ServerObject> instantiate(const Caller& caller, UserMessage& message) const override;

    /// Does what the settings describe for the method, and returns the result. Throws Refusal.
    MethodResult call(const std::string& method, const CPPByteArray& argument, const Caller& caller,
                      DescribedState& state) const;

  private:
    DescribedClass(std::string name, const Identifier& identifier, ServerProcess& process);

    void readStateOwner(const SettingsSection& section, BehaviourReader& reader);
    void readMethods(const SettingsSection& section, BehaviourReader& reader);

    const std::string name_;
    const Identifier identifier_;
    ServerProcess& process_;
    std::shared_ptr<DescribedState> sharedState_;  // null if each object has its own
    // For the sequences of "instantiate". They belong to the class, because each object is created only once.
    mutable SequencePositions creationPositions_;
    std::vector<std::string> methods_;
    std::map<std::string, Behaviour> behaviours_;
};

}  // namespace merrowd
