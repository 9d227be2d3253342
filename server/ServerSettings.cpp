#include "server/ServerSettings.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>

#include "server/SettingValue.h"
#include "settings/LineGrammar.h"

namespace merrowd {

using dovrel::Properties;

namespace {

constexpr Choice<Fault> kFaults[] = {
    {"none", Fault::none},
    {"late", Fault::late},
    {"silent", Fault::silent},
    {"vanishBefore", Fault::vanishBefore},
    {"vanishDuring", Fault::vanishDuring},
    {"vanishAfter", Fault::vanishAfter},
    {"cut", Fault::cut},
    {"garbage", Fault::garbage},
    {"empty", Fault::empty},
    {"noParameter", Fault::noParameter},
    {"failedEvent", Fault::failedEvent},
    {"error", Fault::error},
    {"message", Fault::message},
    {"huge", Fault::huge},
};

constexpr Choice<Handshake> kHandshakes[] = {
    {"answered", Handshake::answered},
    {"silent", Handshake::silent},
    {"empty", Handshake::empty},
    {"noParameter", Handshake::noParameter},
};

// The kind of fault comes first: it starts all else of the misbehaviour anew.
void setFault(Misbehaviour& misbehaviour, const std::string& value) {
    Misbehaviour fresh;
    setChoice(fresh.fault, kFaults, value);
    misbehaviour = fresh;
}

void setCommand(uint32_t& command, const std::string& value) {
    for (const dovrel::POSCommand& known : dovrel::kPOSCommands) {
        if (value != known.name) continue;
        command = known.code;
        return;
    }
    throw UnfitValue{"the name of a command, as in \"call method\""};
}

struct Setting {
    const char* key;
    void (*set)(ServerSettings& settings, const std::string& value);
};

// In the order in which they are taken over.
constexpr Setting kSettings[] = {
    {"log", [](ServerSettings& to, const std::string& value) { setFlag(to.log, value); }},
    {"endWithLastClient",
     [](ServerSettings& to, const std::string& value) { setFlag(to.endWithLastClient, value); }},
    {"endAtStart", [](ServerSettings& to, const std::string& value) { setFlag(to.endAtStart, value); }},
    {"checkClasses", [](ServerSettings& to, const std::string& value) { setFlag(to.checkClasses, value); }},
    {"interfaceVersion",
     [](ServerSettings& to, const std::string& value) { setNumber(to.interfaceVersion, value); }},
    {"handshake",
     [](ServerSettings& to, const std::string& value) { setChoice(to.handshake, kHandshakes, value); }},
    {"misbehave", [](ServerSettings& to, const std::string& value) { setFault(to.misbehaviour, value); }},
    {"misbehaveCommand",
     [](ServerSettings& to, const std::string& value) { setCommand(to.misbehaviour.command, value); }},
    {"misbehaveSkip",
     [](ServerSettings& to, const std::string& value) { setNumber(to.misbehaviour.skip, value); }},
    {"misbehaveTimes",
     [](ServerSettings& to, const std::string& value) { setNumber(to.misbehaviour.times, value); }},
    {"delay", [](ServerSettings& to, const std::string& value) { setDelay(to.misbehaviour.delay, value); }},
    {"cutTo", [](ServerSettings& to, const std::string& value) { setNumber(to.misbehaviour.cutTo, value); }},
    {"errorCode",
     [](ServerSettings& to, const std::string& value) { setNumber(to.misbehaviour.errorCode, value); }},
    {"errorText",
     [](ServerSettings& to, const std::string& value) { setText(to.misbehaviour.errorText, value); }},
    {"messageFlags",
     [](ServerSettings& to, const std::string& value) { setNumber(to.misbehaviour.messageFlags, value); }},
    {"messageText",
     [](ServerSettings& to, const std::string& value) { setText(to.misbehaviour.messageText, value); }},
    {"hugeSize",
     [](ServerSettings& to, const std::string& value) { setNumber(to.misbehaviour.hugeSize, value); }},
    {"eventStatus",
     [](ServerSettings& to, const std::string& value) { setStatus(to.misbehaviour.eventStatus, value); }},
};

bool isSetting(const std::string& key) {
    return std::any_of(std::begin(kSettings), std::end(kSettings),
                       [&key](const Setting& setting) { return key == setting.key; });
}

}  // namespace

void applySettings(const Properties& entries, ServerSettings& settings, std::vector<std::string>& problems) {
    for (const Setting& setting : kSettings) {
        std::string value;
        if (!entries.findString(setting.key, value)) continue;
        try {
            setting.set(settings, value);
        } catch (const UnfitValue& unfit) {
            problems.push_back(problemOfValue(setting.key, value, unfit));
        }
    }
    for (int32_t i = 0; i < static_cast<int32_t>(entries.size()); ++i) {
        const std::string key = entries.getKeyAt(i);
        if (!isSetting(key)) problems.push_back("there is no setting \"" + key + "\"");
    }
}

std::vector<std::string> settingNames() {
    std::vector<std::string> names;
    for (const Setting& setting : kSettings)
        names.emplace_back(setting.key);
    return names;
}

std::vector<std::string> faultNames() {
    std::vector<std::string> names;
    for (const Choice<Fault>& fault : kFaults)
        names.emplace_back(fault.name);
    return names;
}

}  // namespace merrowd
