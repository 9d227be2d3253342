#include "server/Commands.h"

namespace merrowd {

namespace {

CPPByteArray version() {
    return bytesOf("Merrowd " MERROWD_VERSION);
}

CPPByteArray classes(const ServerState& state) {
    std::string lines;
    for (const std::string& name : state.classes.names())
        lines += name + '\n';
    return bytesOf(lines);
}

CPPByteArray objects(const Application& application) {
    constexpr uint32_t kIdentifierSize = dovrel::kPOSIdentifierSize;
    std::string lines;
    for (const auto& entry : application.objects) {
        lines += dovrel::bytesToHexText(entry.first.data(), kIdentifierSize) + ' ' +
                 entry.second.ofClass->name() + '\n';
    }
    return bytesOf(lines);
}

enum InformationRequest : uint32_t {
    kServerVersion = 1,
    kClassNames = 2,
    kApplicationCount = 3,
    kObjectCount = 4,
    kInterfaceVersion = 352
};

}  // namespace

CPPByteArray runCommand(ServerState& state, uint32_t applicationId, const std::string& command,
                        CPPByteArray argument) {
    const Application& application = state.applications.find(applicationId);
    if (command == "ping") return argument;

    const bool known = command == "version" || command == "classes" || command == "objects";
    if (!known) throw Refusal{refusalCode::kPOSCommandNotExecuted, "there is no command \"" + command + "\""};
    requireNoArgument(argument);
    if (command == "version") return version();
    if (command == "classes") return classes(state);
    return objects(application);
}

CPPByteArray informationFor(const ServerState& state, const CPPByteArray& request) {
    constexpr uint32_t kRequestSize = 2;
    const uint32_t number = request.getByte(0) | uint32_t{request.getByte(1)} << 8;
    switch (request.getSize() == kRequestSize ? number : 0) {
        case kServerVersion:
            return version();
        case kClassNames:
            return classes(state);
        case kApplicationCount:
            return bytesOfNumber(static_cast<uint32_t>(state.applications.size()));
        case kObjectCount:
            return bytesOfNumber(static_cast<uint32_t>(state.applications.objectCount()));
        case kInterfaceVersion:
            return bytesOfNumber(state.settings.interfaceVersion);
        default:
            throw Refusal{refusalCode::kPOSParameterFormat, "there is no such information"};
    }
}

}  // namespace merrowd
