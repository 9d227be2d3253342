#include "server/DescribedClass.h"

#include <utility>

#include "server/BehaviourReader.h"
#include "server/SettingValue.h"

namespace merrowd {

namespace {

constexpr char kIdentifierKey[] = "identifier";
constexpr char kMethodsKey[] = "methods";
constexpr char kStateKey[] = "state";

/// Whether each object has a state of its own, or all objects of the class share one.
enum class StateOwner { object, ofClass };

constexpr Choice<StateOwner> kStateOwners[] = {{"object", StateOwner::object},
                                               {"class", StateOwner::ofClass}};

class DescribedObject : public ServerObject {
  public:
    DescribedObject(const DescribedClass& ofClass, std::shared_ptr<DescribedState> state)
        : class_(ofClass), state_(std::move(state)) {}
    MethodResult call(const std::string& method, CPPByteArray argument, const Caller& caller) override {
        return class_.call(method, argument, caller, *state_);
    }

  private:
    const DescribedClass& class_;
    const std::shared_ptr<DescribedState> state_;
};

// Finds the identifier of a section's class. Returns false and reports a problem if the identifier has the wrong
// size, or if there is none and the name is too long for one.
bool findIdentifier(const SettingsSection& section, BehaviourReader& reader, const std::string& name,
                    Identifier& identifier) {
    if (!section.entries.contains(kIdentifierKey)) {
        if (name.size() <= identifier.size()) {
            identifier = ServerClass::identifierFromName(name);
            return true;
        }
        reader.report(DescribedClass::kSectionKey,
                      "the name is longer than 16 bytes and there is no identifier");
        return false;
    }
    const std::unique_ptr<CPPByteArray> bytes = section.entries.getBinary(kIdentifierKey);
    if (bytes->getSize() == identifier.size()) {
        bytes->readBytes(0, identifier.data(), bytes->getSize());
        return true;
    }
    reader.report(kIdentifierKey,
                  "the identifier has " + std::to_string(bytes->getSize()) + " bytes, not 16");
    return false;
}

}  // namespace

DescribedClass::DescribedClass(std::string name, const Identifier& identifier, ServerProcess& process)
    : name_(std::move(name)), identifier_(identifier), process_(process) {}

std::shared_ptr<const ServerClass> DescribedClass::fromSection(const SettingsSection& section,
                                                               ServerProcess& process,
                                                               std::vector<std::string>& problems) {
    std::string name;
    section.entries.findString(kSectionKey, name);
    if (name.empty()) {
        problems.push_back(section.place(kSectionKey) + "a class has no name");
        return nullptr;
    }
    BehaviourReader reader(section, name, problems);
    Identifier identifier{};
    if (!findIdentifier(section, reader, name, identifier)) return nullptr;

    std::shared_ptr<DescribedClass> described(new DescribedClass(name, identifier, process));
    described->readStateOwner(section, reader);
    described->readMethods(section, reader);
    reader.reportUnusedKeys({kSectionKey, kIdentifierKey, kMethodsKey, kStateKey});
    return described;
}

void DescribedClass::readStateOwner(const SettingsSection& section, BehaviourReader& reader) {
    std::string value;
    if (!section.entries.findString(kStateKey, value)) return;
    try {
        StateOwner owner = StateOwner::object;
        setChoice(owner, kStateOwners, value);
        if (owner == StateOwner::ofClass) sharedState_ = std::make_shared<DescribedState>();
    } catch (const UnfitValue& unfit) {
        reader.report(kStateKey, describeProblem(kStateKey, value, unfit));
    }
}

void DescribedClass::readMethods(const SettingsSection& section, BehaviourReader& reader) {
    behaviours_.emplace(kInstantiate, reader.read(kInstantiate, false));
    std::string names;
    if (!section.entries.findString(kMethodsKey, names)) return;
    for (const std::string& method : splitAtCommas(names)) {
        if (method.empty() || behaviours_.count(method) != 0) {
            reader.report(kMethodsKey, inQuotes(method) + " cannot be the name of a method");
            continue;
        }
        methods_.push_back(method);
        behaviours_.emplace(method, reader.read(method, true));
    }
}

std::unique_ptr<ServerObject> DescribedClass::instantiate(const Caller& caller, UserMessage& message) const {
    std::shared_ptr<DescribedState> state = sharedState_;
    if (state == nullptr) state = std::make_shared<DescribedState>();
    const CPPByteArray noArgument;
    message =
        perform(behaviours_.at(kInstantiate), {noArgument, caller, *state, creationPositions_, process_})
            .message;
    return std::make_unique<DescribedObject>(*this, std::move(state));
}

MethodResult DescribedClass::call(const std::string& method, const CPPByteArray& argument,
                                  const Caller& caller, DescribedState& state) const {
    return perform(behaviours_.at(method), {argument, caller, state, state.positions, process_});
}

}  // namespace merrowd
