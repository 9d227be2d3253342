#include "server/BehaviourReader.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>

#include "server/SettingValue.h"

namespace merrowd {

using dovrel::Properties;

namespace {

constexpr char kCases[] = "cases";
constexpr char kSequence[] = "sequence";

// How deep cases and steps can be nested.
constexpr int kMostLevels = 8;

constexpr Choice<SequenceEnd> kSequenceEnds[] = {
    {"stay", SequenceEnd::stay}, {"restart", SequenceEnd::restart}, {"fail", SequenceEnd::fail}};

/// The value of an entry, as text and as bytes.
struct Value {
    std::string text;
    std::string bytes;
};

using Setter = void (*)(Behaviour& behaviour, const Value& value);

/// In which behaviours a word may be used.
enum class Use { always, inCases, forResult };

struct Word {
    const char* word;
    Use use;
    Setter set;
};

template <CounterChange change>
void setChange(Behaviour& behaviour, const Value& value) {
    constexpr int64_t most = std::numeric_limits<int32_t>::max();
    behaviour.change = change;
    behaviour.number.reset();
    if (value.text != "argument") {
        const int64_t least = change == CounterChange::add ? -most : 0;
        behaviour.number = wholeNumber(value.text, least, most);
    }
}

template <StoreAccess access>
void setAccess(Behaviour& behaviour, const Value& value) {
    behaviour.access = access;
    behaviour.store = value.text;
}

template <auto member>
void setBytes(Behaviour& behaviour, const Value& value) {
    behaviour.*member = value.bytes;
}

constexpr Word kWords[] = {
    {"argument", Use::inCases, setBytes<&Behaviour::argument>},
    {"prefix", Use::inCases, setBytes<&Behaviour::prefix>},
    {"pattern", Use::inCases, setBytes<&Behaviour::pattern>},
    {"atLeast", Use::inCases,
     [](Behaviour& behaviour, const Value& value) {
         uint32_t number = 0;
         setNumber(number, value.text);
         behaviour.atLeast = number;
     }},
    {"atEnd", Use::always,
     [](Behaviour& behaviour, const Value& value) { setChoice(behaviour.atEnd, kSequenceEnds, value.text); }},
    {"delay", Use::always,
     [](Behaviour& behaviour, const Value& value) { setDelay(behaviour.delay, value.text); }},
    {"counter", Use::always,
     [](Behaviour& behaviour, const Value& value) { behaviour.counter = value.text; }},
    {"add", Use::always, setChange<CounterChange::add>},
    {"set", Use::always, setChange<CounterChange::set>},
    {"put", Use::always, setAccess<StoreAccess::put>},
    {"get", Use::forResult, setAccess<StoreAccess::get>},
    {"remove", Use::always, setAccess<StoreAccess::remove>},
    {"list", Use::forResult, setAccess<StoreAccess::list>},
    {"key", Use::always, setBytes<&Behaviour::key>},
    {"answer", Use::forResult, setBytes<&Behaviour::answer>},
    {"template", Use::forResult,
     [](Behaviour& behaviour, const Value& value) { setText(behaviour.textTemplate.emplace(), value.text); }},
    {"message", Use::always,
     [](Behaviour& behaviour, const Value& value) {
         setText(behaviour.message.text, value.text);
         behaviour.message.flags = std::max(behaviour.message.flags, 1u);
     }},
    {"messageFlags", Use::always,
     [](Behaviour& behaviour, const Value& value) { setNumber(behaviour.message.flags, value.text); }},
    {"errorCode", Use::always,
     [](Behaviour& behaviour, const Value& value) {
         setNumber(behaviour.failure.code, value.text);
         behaviour.fails = true;
     }},
    {"errorText", Use::always,
     [](Behaviour& behaviour, const Value& value) {
         setText(behaviour.failure.text, value.text);
         behaviour.fails = true;
     }},
};

bool isUsable(Use use, bool isCase, bool hasResult) {
    return use == Use::always || (use == Use::inCases ? isCase : hasResult);
}

}  // namespace

BehaviourReader::BehaviourReader(const SettingsSection& section, const std::string& className,
                                 std::vector<std::string>& problems)
    : section_(section), className_(className), problems_(problems) {}

void BehaviourReader::report(const std::string& key, const std::string& problem) {
    problems_.push_back(section_.place(key) + "class " + inQuotes(className_) + ": " + problem);
}

Behaviour BehaviourReader::read(const std::string& path, bool hasResult) {
    hasResult_ = hasResult;
    return readBehaviour(path, false, 0);
}

Behaviour BehaviourReader::readBehaviour(const std::string& path, bool isCase, int level) {
    Behaviour behaviour;
    behaviour.path = path;
    for (const Word& word : kWords) {
        const std::string key = path + "." + word.word;
        if (!isUsable(word.use, isCase, hasResult_) || !section_.entries.contains(key)) continue;
        used_.insert(key);
        const Value value{section_.entries.getString(key), bytesToText(*section_.entries.getBinary(key))};
        try {
            word.set(behaviour, value);
        } catch (const UnfitValue& unfit) {
            report(key, describeProblem(key, value.text, unfit));
        }
    }
    behaviour.cases = readParts(behaviour, kCases, true, level);
    behaviour.sequence = readParts(behaviour, kSequence, false, level);
    checkBehaviour(behaviour);
    return behaviour;
}

// Each name is read once. Otherwise names that are repeated on every level would take exponential time.
BehaviourReader::Parts BehaviourReader::readParts(const Behaviour& whole, const char* word, bool areCases,
                                                  int level) {
    Parts parts;
    const std::string key = whole.path + "." + word;
    std::string names;
    if (!section_.entries.findString(key, names)) return parts;
    used_.insert(key);
    if (level == kMostLevels) {
        report(key, inQuotes(whole.path) + " cannot have " + word + ": they are nested more than " +
                        std::to_string(kMostLevels) + " levels deep");
        return parts;
    }
    std::map<std::string, Parts::value_type> known;
    for (const std::string& name : splitAtCommas(names)) {
        if (!isUsableName(name, key)) continue;
        Parts::value_type& part = known[name];
        if (part != nullptr && areCases) {
            report(key, inQuotes(name) + " is twice in " + inQuotes(key));
            continue;
        }
        if (part == nullptr)
            part = std::make_shared<Behaviour>(readBehaviour(whole.path + "." + name, areCases, level + 1));
        parts.push_back(part);
    }
    return parts;
}

bool BehaviourReader::isUsableName(const std::string& name, const std::string& key) {
    const bool isUsable = !name.empty() && name.find('.') == std::string::npos;
    if (!isUsable) report(key, inQuotes(name) + " cannot be a name in " + inQuotes(key));
    return isUsable;
}

void BehaviourReader::checkBehaviour(const Behaviour& behaviour) {
    const std::string& path = behaviour.path;
    if (behaviour.counter.empty() && (behaviour.change != CounterChange::none || behaviour.atLeast))
        report(path + (behaviour.atLeast                        ? ".atLeast"
                       : behaviour.change == CounterChange::add ? ".add"
                                                                : ".set"),
               inQuotes(path) + " names no counter");
    const bool hasOwnResult = behaviour.answer || behaviour.textTemplate || behaviour.fails;
    if (!behaviour.sequence.empty() && hasOwnResult)
        report(path + ".sequence", inQuotes(path) + " has a sequence, so its own result is never used");
}

void BehaviourReader::reportUnusedKeys(const std::set<std::string>& known) {
    for (const auto& [key, line] : section_.lines) {
        if (known.count(key) == 0 && used_.count(key) == 0) report(key, inQuotes(key) + " describes nothing");
    }
}

std::vector<std::string> BehaviourReader::words() {
    std::vector<std::string> words{kCases, kSequence};
    for (const Word& word : kWords)
        words.emplace_back(word.word);
    return words;
}

}  // namespace merrowd
