// DescribedClass: a class without code, described by a section of the settings. Its methods have fixed
// answers, messages, failures and delays, so that the author of a host can imitate the classes of a product.
//
//     //CLASS                 the name, up to 16 characters; it may be longer if there is an identifier
//     STR:Scanner
//     //identifier            optional, 16 bytes; default: the name padded with zero bytes
//     BAR:000102030405060708090A0B0C0D0E0F
//     //methods               the names, separated by commas
//     STR:scan, eject
//     //scan.answer           the method's answer: text, bytes, or a number as 4 bytes
//     STR:page 1
//     //scan.message          a message for the user, shown after the call
//     STR:The lamp is getting old.
//     //eject.errorCode       the method fails with this code and text
//     INT:28
//     //eject.errorText
//     STR:The paper is stuck.
//     //eject.delay           milliseconds before the method does anything
//     INT:250
//
// "instantiate" in place of a method's name describes the creation of objects, which has no answer.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "server/ServerClass.h"
#include "server/ServerProcess.h"
#include "settings/Properties.h"

namespace merrowd {

/// The described behaviour of a method or of the creation of objects.
struct Behaviour {
    CPPByteArray answer;
    UserMessage message;
    bool fails = false;
    Refusal failure{refusalCode::kPOSMethodExecution, "This is a test."};
    std::chrono::milliseconds delay{0};
};

class DescribedClass : public ServerClass {
  public:
    /// The key at the beginning of a class's section.
    static constexpr char kSectionKey[] = "CLASS";

    /// Makes a class from its section. Returns null if the section has no usable name or identifier. Other
    /// wrong entries are ignored. Each problem adds a line to `problems`. The class calls `process` for its
    /// delays, so `process` must outlive the class.
    static std::shared_ptr<const ServerClass> fromSection(const dovrel::Properties& section,
                                                          ServerProcess& process,
                                                          std::vector<std::string>& problems);

    std::string name() const override { return name_; }
    Identifier identifier() const override { return identifier_; }
    std::vector<std::string> methods() const override { return methods_; }
    std::unique_ptr<ServerObject> instantiate(UserMessage& message) const override;

    /// Does what the settings describe for a method or for "instantiate", and returns the result. Throws Refusal.
    MethodResult perform(const std::string& operation) const;

  private:
    DescribedClass(std::string name, const Identifier& identifier, ServerProcess& process);

    void readMethods(const dovrel::Properties& section, std::vector<std::string>& problems);
    void readEntry(const dovrel::Properties& section, const std::string& key,
                   std::vector<std::string>& problems);
    bool isOperation(const std::string& name) const;

    const std::string name_;
    const Identifier identifier_;
    ServerProcess& process_;
    std::vector<std::string> methods_;
    std::map<std::string, Behaviour> behaviours_;
};

}  // namespace merrowd
