// A class that is not programmed but described, in a section of the settings: methods with fixed answers,
// messages, failures and delays. It lets the author of a host imitate the classes of a product.
//
//     //CLASS                 the name, up to 16 characters; more where an identifier is given
//     STR:Scanner
//     //identifier            optional, 16 bytes; the name padded with zero bytes where it is absent
//     BAR:000102030405060708090A0B0C0D0E0F
//     //methods               the names, with commas between them
//     STR:scan, eject
//     //scan.answer           what the method answers: text, bytes, or a number as 4 bytes
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
// "instantiate" takes the place of a method for the creation of objects; it has no answer.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "server/ServerClass.h"
#include "server/ServerProcess.h"
#include "settings/Properties.h"

namespace merrowd {

/// What a described operation does.
struct Behaviour {
    CPPByteArray answer;
    UserMessage message;
    bool fails = false;
    Refusal failure{refusalCode::kPOSMethodExecution, "This is a test."};
    std::chrono::milliseconds delay{0};
};

class DescribedClass : public ServerClass {
  public:
    /// The key that begins the section of a class.
    static constexpr char kSectionKey[] = "CLASS";

    /// Makes the class of a section. Null when it has no usable name or identifier; other entries that do not
    /// fit are left out. Each problem gets a line. Delays run on `process`, which must outlive the class.
    static std::shared_ptr<const ServerClass> fromSection(const dovrel::Properties& section,
                                                          ServerProcess& process,
                                                          std::vector<std::string>& problems);

    std::string name() const override { return name_; }
    Identifier identifier() const override { return identifier_; }
    std::vector<std::string> methods() const override { return methods_; }
    std::unique_ptr<ServerObject> instantiate(UserMessage& message) const override;

    /// Does what is described for a method, or for "instantiate". Throws Refusal.
    Answer perform(const std::string& operation) const;

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
