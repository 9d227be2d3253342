// Fuzz target for recordings. For every text, the server reads the exchanges that it can, replays each of them
// in both modes, and describes their classes with settings that it can read.

#include "FuzzTarget.h"
#include "server/ImportedClasses.h"
#include "server/Replay.h"
#include "server/SettingsText.h"

namespace {

using namespace merrowd;

constexpr char kPath[] = "/nowhere/recording";

void replay(const Recording& recording, const std::string& text, ReplayMode mode) {
    ApplicationTable applications(1);
    std::vector<std::string> problems;
    Replay replay(Recording(kPath, text, problems), mode, applications, [](const std::string&) {});
    for (const RecordedExchange& exchange : recording.exchanges()) {
        const Outcome outcome = replay.handle(recording.read(exchange.request), 0);
        FUZZ_CHECK(outcome.parameter != nullptr || outcome.status != 0);
    }
    FUZZ_CHECK(replay.replayedCount() + replay.refusedCount() == recording.exchanges().size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(data, data + size);
    std::vector<std::string> problems;
    const Recording recording(kPath, text, problems);
    replay(recording, text, ReplayMode::byRequest);
    replay(recording, text, ReplayMode::inSequence);

    const std::string described = describeClasses(recording, problems);
    problems.clear();
    readSettingsText(described, problems);
    FUZZ_CHECK(problems.empty());
    return 0;
}
