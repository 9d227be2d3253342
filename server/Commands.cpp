#include "server/Commands.h"

#include "serialization/ByteOrder.h"

namespace merrowd {

namespace {

CPPByteArray version() {
    return toBytes("Merrowd " MERROWD_VERSION);
}

CPPByteArray classes(const ServerState& state) {
    std::string lines;
    for (const std::string& name : state.classes.names())
        lines += name + '\n';
    return toBytes(lines);
}

CPPByteArray objects(const Application& application) {
    constexpr uint32_t kIdentifierSize = dovrel::kPOSIdentifierSize;
    std::string lines;
    for (const auto& entry : application.objects) {
        lines += dovrel::bytesToHexText(entry.first.data(), kIdentifierSize) + ' ' +
                 entry.second.ofClass->name() + '\n';
    }
    return toBytes(lines);
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

CPPByteArray readInformation(const ServerState& state, const CPPByteArray& request) {
    constexpr uint32_t kRequestSize = 2;
    switch (request.getSize() == kRequestSize ? dovrel::loadLittleEndian16(request.data()) : 0) {
        case kServerVersion:
            return version();
        case kClassNames:
            return classes(state);
        case kApplicationCount:
            return numberToBytes(static_cast<uint32_t>(state.applications.size()));
        case kObjectCount:
            return numberToBytes(static_cast<uint32_t>(state.applications.objectCount()));
        case kInterfaceVersion:
            return numberToBytes(state.settings.interfaceVersion);
        default:
            throw Refusal{refusalCode::kPOSParameterFormat, "there is no such information"};
    }
}

}  // namespace merrowd
