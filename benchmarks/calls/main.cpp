// Measures calls to one peer and prints the figures as one JSON object. scripts/benchmark runs it for every row.
#include <CLI/CLI.hpp>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <map>

#include "Case.h"
#include "Measurements.h"
#include "Peer.h"

namespace {

using namespace dovrel::benchmarks;

// The peer cannot do what the case asks for.
constexpr int kNotPossible = 3;

// In $TMPDIR or /tmp. Deleted at the end, with everything in it.
class TemporaryFolder {
  public:
    TemporaryFolder() : path_(std::filesystem::temp_directory_path() / "calls.XXXXXX") {
        if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("cannot create the folder " + path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Returns why the peer cannot do this; "" if it can.
std::string obstacle(const Case& measured) {
    if (measured.size > kPeer.largestRequest)
        return "the largest request has " + std::to_string(kPeer.largestRequest) + " bytes";
    if (measured.threads > 1 && kPeer.threads == Threads::onlyOne)
        return "a connection belongs to one thread";
    if (!kPeer.spins) return "";
    if (measured.clientProcessor != kAnyProcessor && measured.clientProcessor == measured.serverProcessor)
        return "both sides spin, so they need two processors";
    if (measured.hosts > 1) return "both sides spin, so each host needs two processors";
    return "";
}

nlohmann::json measure(const Case& measured) {
    switch (measured.kind) {
        case Case::Kind::calls:
            return measureCalls(measured);
        case Case::Kind::first:
            return measureFirstCalls(measured);
        case Case::Kind::start:
            return measureStarts(measured);
    }
    return {};
}

}  // namespace

int main(int count, char** arguments) {
    try {
        // Before anything that a small program would not do.
        if (count == 6 && std::strcmp(arguments[1], kStartedProcessOption) == 0)
            return runStartedProcess(arguments + 2);

        Case measured;
        unsigned pause = 0;
        CLI::App app("Measures calls to one peer and prints the figures as one JSON object.");
        app.footer(
            "Exit status: 0, 1 if something failed, 3 if the peer cannot do this, otherwise a wrong "
            "argument.\n"
            "Example: --size 65536 --client-cpu 1 --server-cpu 0");
        const std::map<std::string, Case::Kind> kinds = {
            {"calls", Case::Kind::calls}, {"first", Case::Kind::first}, {"start", Case::Kind::start}};
        app.add_option("--kind", measured.kind, "calls, first (connect and call) or start (a new process)")
            ->transform(CLI::CheckedTransformer(kinds));
        app.add_option("--size", measured.size, "bytes of each request")->check(CLI::Range(1, 1 << 30));
        app.add_option("--client-cpu", measured.clientProcessor, "processor of the hosts (-1: any)");
        app.add_option("--server-cpu", measured.serverProcessor, "processor of the server (-1: any)");
        app.add_option("--pause", pause, "microseconds of sleep before each call");
        app.add_option("--threads", measured.threads, "threads per connection")->check(CLI::Range(1, 1000));
        app.add_option("--hosts", measured.hosts, "processes that call")->check(CLI::Range(1, 1000));
        app.add_option("--seconds", measured.seconds, "for which each host calls")
            ->check(CLI::Range(0.0, 3600.0));
        CLI11_PARSE(app, count, arguments);
        measured.pause = std::chrono::microseconds(pause);

        const std::string reason = obstacle(measured);
        if (!reason.empty()) {
            std::cerr << reason << '\n';
            return kNotPossible;
        }
        const TemporaryFolder folder;
        measured.folder = folder.path();
        std::cout << measure(measured) << '\n';
        return std::cout.flush().good() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
