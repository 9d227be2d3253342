// An installation of its own for one test: a system root with, if wanted, a texts file in the library's
// bundle, and a home folder in which the user's preferences are kept. The environment is as before at the
// end.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class InstalledTexts {
  public:
    /// Nothing is installed and no language is preferred.
    InstalledTexts();
    InstalledTexts(const InstalledTexts&) = delete;
    InstalledTexts& operator=(const InstalledTexts&) = delete;
    ~InstalledTexts();

    void install(const std::string& content) const;
    void remove() const;

    /// Makes `content` (an XML element of a property list) the user's preference "AppleLanguages".
    void preferLanguages(const std::string& content) const;

  private:
    void setVariable(const std::string& name, const std::string& value);

    TemporaryFolder folder_;
    std::map<std::string, std::optional<std::string>> oldVariables_;
};

}  // namespace dovrel::test
