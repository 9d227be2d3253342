#include "server/ControlCalls.h"

#include <unistd.h>

#include <memory>
#include <set>
#include <utility>

#include "client/exceptions/CPPException.h"
#include "server/DescribedClass.h"
#include "server/ImportedClasses.h"
#include "server/SettingsText.h"

namespace merrowd {

using dovrel::CPPException;
using dovrel::Properties;

namespace {

void addCount(Properties& reply, const char* key, size_t count) {
    reply.addInt(key, static_cast<int32_t>(count));
}

void addProblems(Properties& reply, const std::string& name, const std::vector<std::string>& problems) {
    addCount(reply, (name + "s").c_str(), problems.size());
    for (size_t i = 0; i < problems.size(); ++i)
        reply.addString(name + " " + std::to_string(i + 1), problems[i]);
}

}  // namespace

Outcome ControlCalls::handle(const std::string& text) {
    const std::vector<std::string> problems = apply(text);
    if (state_.settings.log) log_.note("control: " + text);
    for (const std::string& problem : problems)
        log_.note("control: " + problem);
    Properties reply;
    addProblems(reply, "problem", problems);
    if (!startProblems_.empty()) addProblems(reply, "startProblem", startProblems_);
    addState(reply);
    std::string replyText;
    reply.save(replyText);
    Outcome outcome;
    outcome.parameter = makeParameter(replyText);
    return outcome;
}

void ControlCalls::addState(Properties& reply) const {
    reply.addInt("process", getpid());
    addCount(reply, "applications", state_.applications.size());
    addCount(reply, "objects", state_.applications.objectCount());
    if (state_.replay == nullptr) return;
    addCount(reply, "recorded", state_.replay->exchangeCount());
    addCount(reply, "replayed", state_.replay->replayedCount());
    addCount(reply, "refused", state_.replay->refusedCount());
}

void ControlCalls::applyAtStart(const std::string& text, const std::string& path) {
    for (const std::string& problem : apply(text))
        addStartProblem(path + ": " + problem);
}

void ControlCalls::addStartProblem(const std::string& problem) {
    startProblems_.push_back(problem);
    log_.note("settings: " + problem);
}

std::vector<std::string> ControlCalls::apply(const std::string& text) {
    std::vector<std::string> problems;
    for (const SettingsSection& section : readSettingsText(text, problems)) {
        if (section.entries.contains(DescribedClass::kSectionKey)) {
            addClass(section, problems);
        } else {
            applySection(section, problems);
        }
    }
    return problems;
}

void ControlCalls::applySection(const SettingsSection& section, std::vector<std::string>& problems) {
    const std::set<std::string> applied = applySettings(section, state_.settings, problems);
    try {
        if (applied.count("replay") != 0 || applied.count("replayMode") != 0) startReplay(problems);
        if (applied.count("importClasses") != 0) importClasses(problems);
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        problems.emplace_back(failure->getMessage());
    }
}

void ControlCalls::addClass(const SettingsSection& section, std::vector<std::string>& problems) {
    std::shared_ptr<const ServerClass> described = DescribedClass::fromSection(section, process_, problems);
    if (described != nullptr) state_.classes.add(std::move(described));
}

void ControlCalls::startReplay(std::vector<std::string>& problems) {
    state_.replay.reset();
    if (state_.settings.replay.empty()) return;
    Recording recording(state_.settings.replay, problems);
    if (recording.exchanges().empty()) return;
    ExchangeLog& log = log_;
    state_.replay =
        std::make_unique<Replay>(std::move(recording), state_.settings.replayMode, state_.applications,
                                 [&log](const std::string& text) { log.note(text); });
}

void ControlCalls::importClasses(std::vector<std::string>& problems) {
    const std::string& path = state_.settings.importClasses;
    if (path.empty()) return;
    const Recording recording(path, problems);
    const std::string described = describeClasses(recording, problems);
    std::vector<std::string> ofClasses;
    for (const SettingsSection& section : readSettingsText(described, ofClasses))
        addClass(section, ofClasses);
    for (const std::string& problem : ofClasses)
        problems.push_back("the settings for the classes of " + path + ": " + problem);
}

}  // namespace merrowd
