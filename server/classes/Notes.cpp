// Notes: a small store of texts by name. Each object has its own store, in memory only.
//
//   method   argument                        result
//   put      name, a zero byte, any bytes    none; stores the bytes under the name and replaces older bytes
//   get      name                            the bytes
//   list     none                            all names in alphabetical order, a line feed after each
//   remove   name                            none
//
// A name is not empty and contains no zero byte and no line feed. For an unknown
// name, `get` and `remove` fail.
#include <map>
#include <string>

#include "server/BuiltInClass.h"

namespace merrowd {
namespace {

class Notes {
  public:
    CPPByteArray put(CPPByteArray argument) {
        const std::string both = bytesToText(argument);
        const size_t end = both.find('\0');
        if (end == std::string::npos) {
            throw Refusal{refusalCode::kPOSParameterFormat, "there is no zero byte after the name"};
        }
        notes_[checked(both.substr(0, end))] = both.substr(end + 1);
        return {};
    }

    CPPByteArray get(CPPByteArray argument) { return toBytes(find(argument)->second); }

    CPPByteArray list(CPPByteArray argument) {
        requireNoArgument(argument);
        std::string names;
        for (const auto& note : notes_)
            names += note.first + '\n';
        return toBytes(names);
    }

    CPPByteArray remove(CPPByteArray argument) {
        notes_.erase(find(argument));
        return {};
    }

  private:
    using Store = std::map<std::string, std::string>;

    static const std::string& checked(const std::string& name) {
        if (name.empty() || name.find_first_of(std::string("\0\n", 2)) != std::string::npos) {
            throw Refusal{refusalCode::kPOSParameterFormat, "this is not a name for a note"};
        }
        return name;
    }

    Store::iterator find(const CPPByteArray& argument) {
        const auto note = notes_.find(checked(bytesToText(argument)));
        if (note == notes_.end())
            throw Refusal{refusalCode::kPOSMethodExecution, "there is no note of that name"};
        return note;
    }

    Store notes_;
};

const BuiltInClass<Notes> kNotes("Notes", {{"put", &Notes::put},
                                           {"get", &Notes::get},
                                           {"list", &Notes::list},
                                           {"remove", &Notes::remove}});

}  // namespace
}  // namespace merrowd
