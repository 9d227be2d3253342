#include "server/Behaviour.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "platform/text/TextConversions.h"
#include "server/SettingValue.h"

namespace merrowd {

namespace {

[[noreturn]] void refuse(const std::string& text) {
    throw Refusal{refusalCode::kPOSMethodExecution, text};
}

std::string_view viewText(const CPPByteArray& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.getSize()};
}

bool fits(const Behaviour& candidate, const DescribedCall& call) {
    const std::string_view argument = viewText(call.argument);
    if (candidate.argument && argument != *candidate.argument) return false;
    if (candidate.prefix && argument.substr(0, candidate.prefix->size()) != *candidate.prefix) return false;
    if (candidate.pattern && !fitsPattern(argument, *candidate.pattern)) return false;
    return !candidate.atLeast || call.state.counters[candidate.counter] >= *candidate.atLeast;
}

const Behaviour* findCase(const Behaviour& behaviour, const DescribedCall& call) {
    const auto found = std::find_if(behaviour.cases.begin(), behaviour.cases.end(),
                                    [&call](const auto& candidate) { return fits(*candidate, call); });
    return found != behaviour.cases.end() ? found->get() : nullptr;
}

const Behaviour& takeStep(const Behaviour& behaviour, SequencePositions& positions) {
    size_t& position = positions[behaviour.path];
    if (position == behaviour.sequence.size()) {
        if (behaviour.atEnd == SequenceEnd::fail) refuse("the sequence of " + behaviour.path + " has ended");
        position = behaviour.atEnd == SequenceEnd::restart ? 0 : position - 1;
    }
    return *behaviour.sequence[position++];
}

void changeCounter(const Behaviour& behaviour, const DescribedCall& call) {
    if (behaviour.change == CounterChange::none) return;
    uint32_t& counter = call.state.counters[behaviour.counter];
    int64_t value = behaviour.number ? *behaviour.number : int64_t{parseNumber(call.argument)};
    if (behaviour.change == CounterChange::add) value += counter;
    if (value < 0 || value > std::numeric_limits<uint32_t>::max())
        refuse("the counter " + inQuotes(behaviour.counter) + " does not fit in 32 bits");
    counter = static_cast<uint32_t>(value);
}

// With a fixed key the whole argument is stored; otherwise a zero byte ends the name of the entry.
void putEntry(const Behaviour& behaviour, const DescribedCall& call) {
    const std::string argument = bytesToText(call.argument);
    auto& store = call.state.stores[behaviour.store];
    if (behaviour.key) {
        store[*behaviour.key] = argument;
        return;
    }
    const size_t end = argument.find('\0');
    if (end == std::string::npos)
        throw Refusal{refusalCode::kPOSParameterFormat, "there is no zero byte after the name"};
    store[argument.substr(0, end)] = argument.substr(end + 1);
}

std::string listEntries(const std::map<std::string, std::string>& store) {
    std::string names;
    for (const auto& entry : store)
        names += entry.first + '\n';
    return names;
}

std::string accessStore(const Behaviour& behaviour, const DescribedCall& call) {
    if (behaviour.access == StoreAccess::put) {
        putEntry(behaviour, call);
        return "";
    }
    auto& store = call.state.stores[behaviour.store];
    if (behaviour.access == StoreAccess::list) return listEntries(store);
    const auto entry = store.find(behaviour.key ? *behaviour.key : bytesToText(call.argument));
    if (entry == store.end()) refuse("the store " + inQuotes(behaviour.store) + " has no such entry");
    if (behaviour.access == StoreAccess::get) return entry->second;
    store.erase(entry);
    return "";
}

std::string fillTemplate(const Behaviour& behaviour, const DescribedCall& call) {
    const std::string counter = std::to_string(call.state.counters[behaviour.counter]);
    const std::pair<std::string_view, std::string> values[] = {{"{argument}", bytesToText(call.argument)},
                                                               {"{application}", call.caller.name},
                                                               {"{counter}", counter}};
    std::string text;
    for (std::string_view rest = *behaviour.textTemplate; !rest.empty();) {
        size_t taken = 1;
        std::string value(rest.substr(0, 1));
        for (const auto& [name, replacement] : values) {
            if (rest.substr(0, name.size()) != name) continue;
            value = replacement;
            taken = name.size();
        }
        text += value;
        rest.remove_prefix(taken);
    }
    return text;
}

CPPByteArray makeResult(const Behaviour& behaviour, const DescribedCall& call) {
    changeCounter(behaviour, call);
    const bool usesStore = behaviour.access != StoreAccess::none;
    const std::string stored = usesStore ? accessStore(behaviour, call) : "";
    if (behaviour.textTemplate) return toBytes(fillTemplate(behaviour, call));
    if (behaviour.answer) return toBytes(*behaviour.answer);
    if (!usesStore && !behaviour.counter.empty())
        return numberToBytes(call.state.counters[behaviour.counter]);
    return toBytes(stored);
}

}  // namespace

MethodResult perform(const Behaviour& behaviour, const DescribedCall& call) {
    if (behaviour.delay.count() > 0) call.process.pause(behaviour.delay);
    if (const Behaviour* const found = findCase(behaviour, call)) return perform(*found, call);
    if (!behaviour.sequence.empty()) return perform(takeStep(behaviour, call.positions), call);
    if (behaviour.fails) throw behaviour.failure;
    MethodResult result(makeResult(behaviour, call));
    result.message = behaviour.message;
    return result;
}

// Goes back to the last "*" and lets it stand for one byte more, so the time is at most the product of both
// lengths.
bool fitsPattern(std::string_view text, std::string_view pattern) {
    size_t at = 0;
    size_t in = 0;
    size_t star = std::string_view::npos;
    size_t afterStar = 0;
    while (at < text.size()) {
        if (in < pattern.size() && pattern[in] == '*') {
            star = in++;
            afterStar = at;
        } else if (in < pattern.size() && (pattern[in] == '?' || pattern[in] == text[at])) {
            ++in;
            ++at;
        } else if (star != std::string_view::npos) {
            in = star + 1;
            at = ++afterStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', in) == std::string_view::npos;
}

}  // namespace merrowd
