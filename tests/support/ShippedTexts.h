// The texts that ship with the library, as the user gets to see them.
#pragma once

#include <map>
#include <string>

namespace dovrel::test {

class ShippedTexts {
  public:
    /// Reads the section of a language from a texts file; fails the test if there is none.
    explicit ShippedTexts(const std::string& path, const std::string& language = "English");

    /// A text without its mnemonic mark, with its line breaks as carriage returns, in UTF-8. Fails the test
    /// where there is none.
    std::string text(const std::string& key) const;

    /// The body of the alert that reports a failure of an application.
    std::string failureBody(const std::string& application, const std::string& message,
                            const std::string& explanationKey) const;

    /// The entry in the system log that stands for an alert that could not be shown. Its line ends are line
    /// feeds.
    static std::string unshownAlert(std::string body);

  private:
    std::map<std::string, std::string> texts_;
};

}  // namespace dovrel::test
