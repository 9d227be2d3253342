// The settings of the server, and their names in the settings file and in control calls.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSCommands.h"
#include "server/Misbehaviour.h"
#include "settings/Properties.h"

namespace merrowd {

struct ServerSettings {
    bool log = false;                ///< every exchange goes to the log
    bool endWithLastClient = false;  ///< the server ends when its last application has gone
    bool endAtStart = false;         ///< the server ends as soon as it has been started
    bool checkClasses = false;       ///< clients are told to check classes before they ask for objects
    uint32_t interfaceVersion = dovrel::kPOSInterfaceVersion;
    Handshake handshake = Handshake::answered;
    Misbehaviour misbehaviour;
};

/// Takes over the entries that are settings. Settings without an entry stay as they are, but those of the
/// misbehaviour start anew when there is an entry for it. An entry that is no setting, or whose value does
/// not fit, changes nothing and gets a line in `problems`.
void applySettings(const dovrel::Properties& entries, ServerSettings& settings,
                   std::vector<std::string>& problems);

/// The names of all settings, for documents to be held to.
std::vector<std::string> settingNames();

/// The names of all faults, in the same way.
std::vector<std::string> faultNames();

}  // namespace merrowd
