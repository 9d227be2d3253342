#include "server/DescribedClass.h"

#include <algorithm>
#include <utility>

#include "server/SettingValue.h"
#include "settings/LineGrammar.h"

namespace merrowd {

using dovrel::Properties;

namespace {

constexpr char kIdentifierKey[] = "identifier";
constexpr char kMethodsKey[] = "methods";
constexpr char kInstantiate[] = "instantiate";

class DescribedObject : public ServerObject {
  public:
    explicit DescribedObject(const DescribedClass& ofClass) : class_(ofClass) {}
    MethodResult call(const std::string& method, CPPByteArray) override { return class_.perform(method); }

  private:
    const DescribedClass& class_;
};

std::vector<std::string> splitAtCommas(const std::string& text) {
    std::vector<std::string> names;
    for (size_t from = 0; from <= text.size();) {
        const size_t comma = std::min(text.find(',', from), text.size());
        names.emplace_back(dovrel::trimmed(std::string_view(text).substr(from, comma - from)));
        from = comma + 1;
    }
    return names;
}

// Finds the identifier of a section's class. Returns false and adds a problem if the identifier has the wrong
// size, or if there is none and the name is too long for one.
bool findIdentifier(const Properties& section, const std::string& name, Identifier& identifier,
                    std::vector<std::string>& problems) {
    if (!section.contains(kIdentifierKey)) {
        if (name.size() <= identifier.size()) {
            identifier = ServerClass::identifierFromName(name);
            return true;
        }
        problems.push_back("class \"" + name +
                           "\": the name is longer than 16 bytes and there is no identifier");
        return false;
    }
    const std::unique_ptr<CPPByteArray> bytes = section.getBinary(kIdentifierKey);
    if (bytes->getSize() == identifier.size()) {
        bytes->readBytes(0, identifier.data(), bytes->getSize());
        return true;
    }
    problems.push_back("class \"" + name + "\": the identifier has " + std::to_string(bytes->getSize()) +
                       " bytes, not 16");
    return false;
}

// Sets one aspect of a behaviour, named by the word after the point. Returns false if the word is unknown.
bool setAspect(Behaviour& behaviour, const std::string& aspect, const Properties& section,
               const std::string& key) {
    const std::string value = section.getString(key);
    if (aspect == "answer") {
        behaviour.answer.assign(*section.getBinary(key));
    } else if (aspect == "message") {
        setText(behaviour.message.text, value);
        behaviour.message.flags = std::max(behaviour.message.flags, 1u);
    } else if (aspect == "messageFlags") {
        setNumber(behaviour.message.flags, value);
    } else if (aspect == "errorCode") {
        setNumber(behaviour.failure.code, value);
        behaviour.fails = true;
    } else if (aspect == "errorText") {
        setText(behaviour.failure.text, value);
        behaviour.fails = true;
    } else if (aspect == "delay") {
        setDelay(behaviour.delay, value);
    } else {
        return false;
    }
    return true;
}

}  // namespace

DescribedClass::DescribedClass(std::string name, const Identifier& identifier, ServerProcess& process)
    : name_(std::move(name)), identifier_(identifier), process_(process) {}

std::shared_ptr<const ServerClass> DescribedClass::fromSection(const Properties& section,
                                                               ServerProcess& process,
                                                               std::vector<std::string>& problems) {
    std::string name;
    section.findString(kSectionKey, name);
    if (name.empty()) {
        problems.push_back("a class has no name");
        return nullptr;
    }
    Identifier identifier{};
    if (!findIdentifier(section, name, identifier, problems)) return nullptr;

    std::shared_ptr<DescribedClass> described(new DescribedClass(name, identifier, process));
    described->readMethods(section, problems);
    for (int32_t i = 0; i < static_cast<int32_t>(section.size()); ++i) {
        described->readEntry(section, section.getKeyAt(i), problems);
    }
    return described;
}

void DescribedClass::readMethods(const Properties& section, std::vector<std::string>& problems) {
    std::string names;
    if (!section.findString(kMethodsKey, names)) return;
    for (const std::string& method : splitAtCommas(names)) {
        if (method.empty() || isOperation(method)) {
            problems.push_back("class \"" + name_ + "\": \"" + method + "\" cannot be the name of a method");
            continue;
        }
        methods_.push_back(method);
    }
}

void DescribedClass::readEntry(const Properties& section, const std::string& key,
                               std::vector<std::string>& problems) {
    if (key == kSectionKey || key == kIdentifierKey || key == kMethodsKey) return;
    const size_t point = std::min(key.rfind('.'), key.size());
    const std::string operation = key.substr(0, point);
    const std::string aspect = point < key.size() ? key.substr(point + 1) : "";
    const bool unknown = !isOperation(operation) || (operation == kInstantiate && aspect == "answer");
    try {
        if (!unknown && setAspect(behaviours_[operation], aspect, section, key)) return;
        problems.push_back("class \"" + name_ + "\": \"" + key + "\" describes nothing");
    } catch (const UnfitValue& unfit) {
        problems.push_back("class \"" + name_ + "\": " + describeProblem(key, section.getString(key), unfit));
    }
}

bool DescribedClass::isOperation(const std::string& name) const {
    return name == kInstantiate || std::find(methods_.begin(), methods_.end(), name) != methods_.end();
}

std::unique_ptr<ServerObject> DescribedClass::instantiate(UserMessage& message) const {
    message = perform(kInstantiate).message;
    return std::make_unique<DescribedObject>(*this);
}

MethodResult DescribedClass::perform(const std::string& operation) const {
    const auto found = behaviours_.find(operation);
    if (found == behaviours_.end()) return {};
    const Behaviour& behaviour = found->second;
    if (behaviour.delay.count() > 0) process_.pause(behaviour.delay);
    if (behaviour.fails) throw behaviour.failure;
    MethodResult result(behaviour.answer);
    result.message = behaviour.message;
    return result;
}

}  // namespace merrowd
