// Notes: a small store of texts by name. Each object has its own; nothing is kept on disk.
//
//   put      takes a name, a zero byte and any bytes; keeps them under the name, in place of what was there
//   get      takes a name, answers the bytes
//   list     answers all names in alphabetical order, a line feed after each
//   remove   takes a name
//
// A name is not empty and holds no zero byte and no line feed. A name that is not there is a failure of the
// method.
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

    CPPByteArray get(CPPByteArray argument) { return bytesOf(find(argument)->second); }

    CPPByteArray list(CPPByteArray argument) {
        requireNoArgument(argument);
        std::string names;
        for (const auto& note : notes_)
            names += note.first + '\n';
        return bytesOf(names);
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
