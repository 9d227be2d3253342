#include "portability/foundation/FoundationUse.h"

#include <objc/runtime.h>

#include <clocale>
#include <csignal>
#include <mutex>

#include "portability/foundation/ImportedFunction.h"

namespace portability {

namespace {

thread_local int usesOfThread = 0;

int changeAction(int signal, const struct sigaction* action, struct sigaction* before) {
    return sigaction(signal, usesOfThread > 0 ? nullptr : action, before);
}

char* changeLocale(int category, const char* locale) {
    return std::setlocale(category, usesOfThread > 0 ? nullptr : locale);
}

// Redirects two of GNUstep's calls to the functions above, only while Foundation is in use. This code may be
// unloaded before GNUstep, so the redirection must not stay.
class Detour {
  public:
    // A class is in the library that defines it, so its address identifies GNUstep's library. Looking up a
    // class sends no message.
    Detour()
        : action_(objc_getClass("NSObject"), "sigaction"), locale_(objc_getClass("NSObject"), "setlocale") {}

    void begin() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (uses_++ > 0) return;
        action_.redirect(reinterpret_cast<void*>(&changeAction));
        locale_.redirect(reinterpret_cast<void*>(&changeLocale));
    }

    void end() {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (--uses_ > 0) return;
        action_.restore();
        locale_.restore();
    }

  private:
    std::mutex mutex_;
    int uses_ = 0;
    ImportedFunction action_;
    ImportedFunction locale_;
};

// Never destroyed: other threads may still use Foundation while the process ends.
Detour& detour() {
    alignas(Detour) static char memory[sizeof(Detour)];
    static Detour& only = *new (memory) Detour;
    return only;
}

}  // namespace

void beginFoundationUse() noexcept {
    detour().begin();
    ++usesOfThread;
}

void endFoundationUse() noexcept {
    --usesOfThread;
    detour().end();
}

}  // namespace portability
