#include "macho/LoadedBundle.h"

#include <unistd.h>

#include "macho/image/ImageLinker.h"
#include "macho/image/UnwindRegistration.h"
#include "macho/objc/ObjectiveCImage.h"

namespace dovrel::macho {

LoadedBundle& LoadedBundle::load(const std::string& executable, const ImportSource& imports) {
    return *new LoadedBundle(executable, imports);
}

LoadedBundle::LoadedBundle(const std::string& executable, const ImportSource& imports)
    : file_(MachOFile::read(executable)), image_(file_) {
    for (const Section& section : file_.sections()) {
        if (section.type == kThreadVariables) throw FormatError("thread-local variables are not supported");
    }
    ImageLinker linker(file_, image_, imports);
    linker.link();
    exports_ = linker.exports();
    image_.keep();
    prepareObjectiveC(file_, image_);
    registerForUnwinding(file_, image_);
    image_.protect(file_);
    runInitialisers();
}

// Calls the initialisers with the arguments of main, as the system does. The bundle's initialisers do not
// use them.
void LoadedBundle::runInitialisers() const {
    using Initialiser = void (*)(int, char**, char**, char**);
    for (const Section& section : file_.sections()) {
        if (section.type != kInitialiserPointers) continue;
        for (uint64_t at = 0; at + sizeof(uintptr_t) <= section.size; at += sizeof(uintptr_t)) {
            char name[] = "host";
            char* arguments[] = {name, nullptr};
            reinterpret_cast<Initialiser>(image_.word(section.address + at))(1, arguments, environ,
                                                                             arguments);
        }
    }
}

void* LoadedBundle::function(const std::string& name) const {
    const auto found = exports_.find("_" + name);
    return found == exports_.end() ? nullptr : image_.at(found->second);
}

}  // namespace dovrel::macho
