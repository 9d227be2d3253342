// The texts that ship with the library, in the form in which the user sees them.
#pragma once

#include <map>
#include <string>

namespace dovrel::test {

class ShippedTexts {
  public:
    /// Reads the section of a language from a texts file; fails the test if there is no such section.
    explicit ShippedTexts(const std::string& path, const std::string& language = "English");

    /// Returns a text in UTF-8 without its mnemonic mark, with carriage returns as line breaks. Fails the
    /// test if there is no such text.
    std::string text(const std::string& key) const;

    /// Returns the body of the alert that reports a failure of an application.
    std::string failureBody(const std::string& application, const std::string& message,
                            const std::string& explanationKey) const;

    /// Returns the system log entry that replaces an alert which could not be
    /// shown. Its lines end with line feeds.
    static std::string unshownAlert(std::string body);

  private:
    std::map<std::string, std::string> texts_;
};

}  // namespace dovrel::test
