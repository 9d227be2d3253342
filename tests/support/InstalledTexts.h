// A separate installation for one test: a system root, optionally with a texts file in the library's bundle,
// and a home folder for the user's preferences. The destructor restores the environment.
#pragma once

#include <string>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/VariableChange.h"

namespace dovrel::test {

class InstalledTexts {
  public:
    /// At first nothing is installed and no language is preferred.
    InstalledTexts();
    InstalledTexts(const InstalledTexts&) = delete;
    InstalledTexts& operator=(const InstalledTexts&) = delete;

    void install(const std::string& content) const;
    void remove() const;

    /// Sets the user's preference "AppleLanguages" to `content` (an XML element of a property list).
    void preferLanguages(const std::string& content) const;

  private:
    const TemporaryFolder folder_;
    const VariableChange root_{"POS_SYSTEM_ROOT", folder_.path("root").c_str()};
    const VariableChange home_{"HOME", folder_.path("home").c_str()};
    // Without a preferred language the locale selects one. The locale "C" does not select any.
    const VariableChange locale_{"LC_ALL", "C"};
};

}  // namespace dovrel::test
