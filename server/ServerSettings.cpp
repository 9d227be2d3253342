#include "server/ServerSettings.h"

#include <algorithm>
#include <iterator>

#include "server/SettingValue.h"

namespace merrowd {

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

// Sets the fault and resets all other settings of the misbehaviour. So it must be applied before them.
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

constexpr Choice<ReplayMode> kReplayModes[] = {
    {"byRequest", ReplayMode::byRequest},
    {"inSequence", ReplayMode::inSequence},
};

void setReplayMode(ReplayMode& mode, const std::string& value) {
    setChoice(mode, kReplayModes, value);
}

// The server's working folder depends on how it was started.
void setPath(std::string& path, const std::string& value) {
    if (!value.empty() && value[0] != '/') throw UnfitValue{"an absolute path"};
    path = value;
}

using Setter = void (*)(ServerSettings& settings, const std::string& value);

struct Setting {
    const char* key;
    Setter set;
};

template <auto member, auto setValue>
void ofServer(ServerSettings& settings, const std::string& value) {
    setValue(settings.*member, value);
}

template <auto member, auto setValue>
void ofMisbehaviour(ServerSettings& settings, const std::string& value) {
    setValue(settings.misbehaviour.*member, value);
}

void setHandshake(Handshake& handshake, const std::string& value) {
    setChoice(handshake, kHandshakes, value);
}

// In the order in which they are applied.
constexpr Setting kSettings[] = {
    {"log", ofServer<&ServerSettings::log, setFlag>},
    {"endWithLastClient", ofServer<&ServerSettings::endWithLastClient, setFlag>},
    {"waitForClient", ofServer<&ServerSettings::waitForClient, setDelay>},
    {"endAtStart", ofServer<&ServerSettings::endAtStart, setFlag>},
    {"checkClasses", ofServer<&ServerSettings::checkClasses, setFlag>},
    {"interfaceVersion", ofServer<&ServerSettings::interfaceVersion, setNumber>},
    {"handshake", ofServer<&ServerSettings::handshake, setHandshake>},
    {"replay", ofServer<&ServerSettings::replay, setPath>},
    {"replayMode", ofServer<&ServerSettings::replayMode, setReplayMode>},
    {"importClasses", ofServer<&ServerSettings::importClasses, setPath>},
    {"misbehave", ofServer<&ServerSettings::misbehaviour, setFault>},
    {"misbehaveCommand", ofMisbehaviour<&Misbehaviour::command, setCommand>},
    {"misbehaveSkip", ofMisbehaviour<&Misbehaviour::skip, setNumber>},
    {"misbehaveTimes", ofMisbehaviour<&Misbehaviour::times, setNumber>},
    {"delay", ofMisbehaviour<&Misbehaviour::delay, setDelay>},
    {"cutTo", ofMisbehaviour<&Misbehaviour::cutTo, setNumber>},
    {"errorCode", ofMisbehaviour<&Misbehaviour::errorCode, setNumber>},
    {"errorText", ofMisbehaviour<&Misbehaviour::errorText, setText>},
    {"messageFlags", ofMisbehaviour<&Misbehaviour::messageFlags, setNumber>},
    {"messageText", ofMisbehaviour<&Misbehaviour::messageText, setText>},
    {"hugeSize", ofMisbehaviour<&Misbehaviour::hugeSize, setNumber>},
    {"eventStatus", ofMisbehaviour<&Misbehaviour::eventStatus, setStatus>},
};

bool isSetting(const std::string& key) {
    return std::any_of(std::begin(kSettings), std::end(kSettings),
                       [&key](const Setting& setting) { return key == setting.key; });
}

}  // namespace

std::set<std::string> applySettings(const SettingsSection& section, ServerSettings& settings,
                                    std::vector<std::string>& problems) {
    std::set<std::string> applied;
    for (const Setting& setting : kSettings) {
        std::string value;
        if (!section.entries.findString(setting.key, value)) continue;
        try {
            setting.set(settings, value);
            applied.insert(setting.key);
        } catch (const UnfitValue& unfit) {
            problems.push_back(section.place(setting.key) + describeProblem(setting.key, value, unfit));
        }
    }
    for (const auto& [key, line] : section.lines) {
        if (!isSetting(key)) problems.push_back(section.place(key) + "there is no setting " + inQuotes(key));
    }
    return applied;
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
