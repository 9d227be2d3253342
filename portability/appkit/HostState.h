// What the window classes change in a process although it belongs to the host. Each object takes note at its
// beginning and brings back at its end. Private to the layer; Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>
#include <signal.h>

#include <string>

namespace portability {

/// What the process does about its signals.
class HostSignals {
   public:
    HostSignals();
    HostSignals(const HostSignals&) = delete;
    HostSignals& operator=(const HostSignals&) = delete;
    ~HostSignals();

   private:
    struct sigaction saved_[NSIG];
    bool isSaved_[NSIG];
};

/// The process's locale.
class HostLocale {
   public:
    HostLocale();
    HostLocale(const HostLocale&) = delete;
    HostLocale& operator=(const HostLocale&) = delete;
    ~HostLocale();

   private:
    std::string saved_;
};

/// The arguments and the environment that Foundation tells. While the object lives there are no arguments,
/// because a starting application opens those that it finds as documents, and the environment has text only,
/// because the programs that the application starts take it for that.
class HostTexts {
   public:
    HostTexts();
    HostTexts(const HostTexts&) = delete;
    HostTexts& operator=(const HostTexts&) = delete;
    ~HostTexts();

   private:
    NSArray* arguments_;
};

/// Keeps the window classes from making ties to other programs of the user, for good: an application would
/// offer its services under the host's name, ask the user what to do where another one did so already, and
/// start a notification server on which its alerts then depend. The host's own ties stay as they are. To be
/// called before there is an application, and once.
void keepWindowClassesAlone();

}  // namespace portability
