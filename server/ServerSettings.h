// The settings of the server, and their names in the settings file and in control calls.
#pragma once

#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSCommands.h"
#include "server/Misbehaviour.h"
#include "server/Replay.h"
#include "server/SettingsText.h"

namespace merrowd {

struct ServerSettings {
    bool log = false;                ///< write every exchange to the log
    bool endWithLastClient = false;  ///< end the server when its last application has gone
    /// For endWithLastClient: how long the server waits for the first application after its start and after
    /// each request.
    std::chrono::milliseconds waitForClient{60000};
    bool endAtStart = false;    ///< end the server at once after its start
    bool checkClasses = false;  ///< tell clients to check classes before they request objects
    uint32_t interfaceVersion = dovrel::kPOSInterfaceVersion;
    Handshake handshake = Handshake::answered;
    Misbehaviour misbehaviour;
    std::string replay;  ///< absolute path of the recording that is replayed; "" if there is none
    ReplayMode replayMode = ReplayMode::byRequest;
    std::string importClasses;  ///< absolute path of the recording whose classes are imported last
};

/// Applies the entries to the settings. Settings without an entry keep their values, but an entry for
/// `misbehave` resets all settings of the misbehaviour first. An entry with an unknown name or a wrong value
/// changes nothing and adds a line to `problems`. Returns the names of the settings that were applied.
std::set<std::string> applySettings(const SettingsSection& section, ServerSettings& settings,
                                    std::vector<std::string>& problems);

/// Returns the names of all settings. Tests compare documents with them.
std::vector<std::string> settingNames();

/// Returns the names of all faults. Tests compare documents with them.
std::vector<std::string> faultNames();

}  // namespace merrowd
