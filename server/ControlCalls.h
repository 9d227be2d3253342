// ControlCalls: applies settings texts to the server: those of control calls, and the settings file at the start.
#pragma once

#include <string>
#include <vector>

#include "server/ExchangeLog.h"
#include "server/Outcome.h"
#include "server/ServerProcess.h"
#include "server/ServerState.h"

namespace merrowd {

class ControlCalls {
  public:
    /// All three must outlive the object.
    ControlCalls(ServerState& state, ServerProcess& process, ExchangeLog& log)
        : state_(state), process_(process), log_(log) {}

    /// Applies settings, described classes and recordings from a text in properties form. The reply is a text of
    /// the same form: the number of problems ("problems") and each of them ("problem 1" and so on), the same for
    /// the start if there were any ("startProblems", "startProblem 1"), the server's state ("process", "applications", "objects"),
    /// and the state of a replay ("recorded", "replayed", "refused"). Problems also go to the log.
    Outcome handle(const std::string& text);

    /// As above for the text of the settings file at `path`, without a reply. Its problems are start problems,
    /// which begin with the path.
    void applyAtStart(const std::string& text, const std::string& path);

    /// Adds a line to the start problems and to the log.
    void addStartProblem(const std::string& problem);

    /// Returns the problems with the settings file, each on one line.
    const std::vector<std::string>& startProblems() const { return startProblems_; }

  private:
    std::vector<std::string> apply(const std::string& text);
    void applySection(const SettingsSection& section, std::vector<std::string>& problems);
    void addClass(const SettingsSection& section, std::vector<std::string>& problems);
    void startReplay(std::vector<std::string>& problems);
    void importClasses(std::vector<std::string>& problems);
    void addState(dovrel::Properties& reply) const;

    ServerState& state_;
    ServerProcess& process_;
    ExchangeLog& log_;
    std::vector<std::string> startProblems_;
};

}  // namespace merrowd
