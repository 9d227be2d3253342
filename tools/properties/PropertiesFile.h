// PropertiesFile: a properties text, a configuration file or the enciphered form of one, read from a file.
#pragma once

#include <string>

namespace dovrel::tools {

class PropertiesFile {
  public:
    /// Reads the file ("-": standard input) and deciphers it if it is enciphered. Throws a ToolFailure that names
    /// the path if it cannot be read or deciphered.
    explicit PropertiesFile(const std::string& path);

    /// The same, but a file that does not exist counts as empty.
    static PropertiesFile openOrCreate(const std::string& path);

    const std::string& text() const { return text_; }
    bool isEnciphered() const { return isEnciphered_; }

    /// Replaces the text, and enciphers the file if it was enciphered. A text from standard input goes to
    /// standard output. If the new content cannot be written, the file keeps its old content, and a ToolFailure
    /// names the path. Refuses files with a NUL byte, because readers see only the text before it.
    void replaceText(const std::string& text);

  private:
    PropertiesFile() = default;

    std::string path_;
    std::string text_;
    bool isEnciphered_ = false;
};

}  // namespace dovrel::tools
