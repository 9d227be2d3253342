#include "tools/server/ServerChannel.h"

#include <memory>
#include <utility>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/EventDescriptor.h"
#include "platform/trace/StatusNames.h"
#include "server/SelfEvent.h"
#include "settings/Properties.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {

namespace {

constexpr char kProblem[] = "problem";
constexpr char kProblemCount[] = "problems";
constexpr char kStartProblem[] = "startProblem";
constexpr char kStartProblemCount[] = "startProblems";

std::string numberedKey(const std::string& name, size_t number) {
    return name + " " + std::to_string(number);
}

// Removes the entries "NAME 1", "NAME 2" and so on, and returns their values in this order. The order of the keys
// has "NAME 10" before "NAME 2".
std::vector<std::string> takeNumbered(Properties& entries, const std::string& name) {
    std::vector<std::string> values;
    for (std::string value; entries.findString(numberedKey(name, values.size() + 1), value);) {
        entries.remove(numberedKey(name, values.size() + 1));
        values.push_back(value);
    }
    return values;
}

ServerState readState(Properties entries) {
    ServerState state;
    state.problems = takeNumbered(entries, kProblem);
    const std::vector<std::string> startProblems = takeNumbered(entries, kStartProblem);
    for (int32_t index = 0; index < static_cast<int32_t>(entries.size()); ++index) {
        const std::string key = entries.getKeyAt(index);
        if (key == kProblemCount) continue;
        if (key == kStartProblemCount) {
            for (size_t at = 0; at < startProblems.size(); ++at)
                state.values.push_back({numberedKey(kStartProblem, at + 1), startProblems[at]});
        }
        state.values.push_back({key, entries.getString(key)});
    }
    return state;
}

// Returns the status of the first step that fails.
int32_t exchange(const std::string& text, SInt32 timeOutTicks, std::string& reply) {
    const Client_to_POS_Communicator channel;
    EventDescriptor event;
    EventDescriptor answer;
    int32_t status =
        channel.CreateEvent(merrowd::kControlEvent.eventClass, merrowd::kControlEvent.eventId, event.get());
    if (status != noErr) return status;
    status = channel.PutData(event.get(), reinterpret_cast<const uint8_t*>(text.data()),
                             static_cast<uint32_t>(text.size()));
    if (status != noErr) return status;
    status =
        AESend(event.get(), answer.get(), kAEWaitReply, kAENormalPriority, timeOutTicks, nullptr, nullptr);
    if (status != noErr) return status;

    std::unique_ptr<uint8_t[]> bytes;
    uint32_t length = 0;
    status = channel.GetData(answer.get(), bytes, length);
    reply.assign(bytes.get(), bytes.get() + length);
    return status;
}

std::string describeFailure(int32_t status) {
    switch (status) {
        case errAEEventNotHandled:
            return "the server that runs is not the development server";
        case errAETimeout:
            return "the server does not answer in time";
        default:
            return "the server cannot be reached: status " + statusText(status);
    }
}

}  // namespace

std::optional<ServerState> sendSettings(const std::string& settings, std::chrono::seconds timeOut) {
    std::string reply;
    const auto ticks = static_cast<SInt32>(timeOut.count() * serverEvent::kTicksPerSecond);
    const int32_t status = exchange(settings, ticks, reply);
    if (status == procNotFound) return std::nullopt;
    if (status != noErr) throw ToolFailure(describeFailure(status));
    Properties entries;
    entries.load(reply, true);
    return readState(std::move(entries));
}

HandshakeResult makeHandshake() {
    const auto start = std::chrono::steady_clock::now();
    HandshakeResult result;
    result.status = Client_to_POS_Communicator().WakeServer(serverEvent::kWakeTimeOutMs, 1);
    result.time = std::chrono::steady_clock::now() - start;
    return result;
}

bool isServerReachable() {
    return makeHandshake().status != procNotFound;
}

}  // namespace dovrel::tools
