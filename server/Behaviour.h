// Behaviour: what a described class does when one of its methods is called, or when an object is created.
//
// A behaviour can have cases, which are chosen by the argument or by a counter, and a sequence of steps, one for
// each call. Cases and steps are behaviours themselves.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "server/ServerClass.h"
#include "server/ServerProcess.h"

namespace merrowd {

/// The next step of each sequence, by the path of the sequence.
using SequencePositions = std::map<std::string, size_t>;

/// The counters and stores that a described class keeps between calls. They belong to an object, or to all
/// objects of a class.
struct DescribedState {
    std::map<std::string, uint32_t> counters;
    std::map<std::string, std::map<std::string, std::string>> stores;
    SequencePositions positions;  ///< for the sequences of the methods
};

/// The behaviour of a sequence after its last step.
enum class SequenceEnd { stay, restart, fail };

enum class CounterChange { none, add, set };

enum class StoreAccess { none, put, get, remove, list };

struct Behaviour {
    std::string path;  ///< the beginning of its keys: "scan", "scan.letter"

    // The conditions of a case. All that are given must hold.
    std::optional<std::string> argument;
    std::optional<std::string> prefix;
    std::optional<std::string> pattern;
    std::optional<uint32_t> atLeast;  ///< the value of the counter

    std::chrono::milliseconds delay{0};
    std::vector<std::shared_ptr<const Behaviour>> cases;
    std::vector<std::shared_ptr<const Behaviour>> sequence;  ///< a repeated step is the same behaviour
    SequenceEnd atEnd = SequenceEnd::stay;

    bool fails = false;
    Refusal failure{refusalCode::kPOSMethodExecution, "This is a test."};

    std::string counter;  ///< "" if there is none
    CounterChange change = CounterChange::none;
    std::optional<int64_t> number;  ///< for the change; without it, the number in the argument

    StoreAccess access = StoreAccess::none;
    std::string store;
    std::optional<std::string> key;  ///< without it, the argument names the entry

    std::optional<std::string> answer;
    std::optional<std::string> textTemplate;
    UserMessage message;
};

/// The call of a method, for the behaviour that performs it. `argument` is empty when an object is created.
struct DescribedCall {
    const CPPByteArray& argument;
    const Caller& caller;
    DescribedState& state;
    SequencePositions& positions;
    ServerProcess& process;
};

/// Performs the behaviour, or the case or step that applies, and returns its result. The result is the answer or
/// the filled template; without both it is what a store returns, or else the counter's value in 4 bytes, or
/// else nothing. Throws Refusal.
MethodResult perform(const Behaviour& behaviour, const DescribedCall& call);

/// Returns whether the whole text fits the pattern: "*" matches any bytes, "?" one byte.
bool fitsPattern(std::string_view text, std::string_view pattern);

}  // namespace merrowd
