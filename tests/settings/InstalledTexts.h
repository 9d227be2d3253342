// A separate installation for one test: a system root, optionally with a texts file in the library's bundle,
// and a home folder for the user's preferences. The destructor restores the environment.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class InstalledTexts {
  public:
    /// At first nothing is installed and no language is preferred.
    InstalledTexts();
    InstalledTexts(const InstalledTexts&) = delete;
    InstalledTexts& operator=(const InstalledTexts&) = delete;
    ~InstalledTexts();

    void install(const std::string& content) const;
    void remove() const;

    /// Sets the user's preference "AppleLanguages" to `content` (an XML element of a property list).
    void preferLanguages(const std::string& content) const;

  private:
    void setVariable(const std::string& name, const std::string& value);

    TemporaryFolder folder_;
    std::map<std::string, std::optional<std::string>> oldVariables_;
};

}  // namespace dovrel::test
