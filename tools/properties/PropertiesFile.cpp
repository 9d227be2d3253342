#include "tools/properties/PropertiesFile.h"

#include <unistd.h>

#include <optional>

#include "settings/EncipheredText.h"
#include "tools/Subcommand.h"
#include "tools/WholeFile.h"

namespace dovrel::tools {

PropertiesFile::PropertiesFile(const std::string& path) : path_(path), text_(readInput(path)) {
    isEnciphered_ = dovrel::isEnciphered(text_);
    if (!isEnciphered_) return;
    std::optional<std::string> plain = decipher(text_);
    if (!plain) {
        throw ToolFailure("cannot decipher " + path +
                          ": it begins with ENC, but what follows is not the base64 " +
                          "text of an enciphered file");
    }
    text_ = *std::move(plain);
}

PropertiesFile PropertiesFile::openOrCreate(const std::string& path) {
    const bool isStandardInput = path == "-";
    if (isStandardInput || access(path.c_str(), F_OK) == 0) return PropertiesFile(path);
    PropertiesFile file;
    file.path_ = path;
    return file;
}

void PropertiesFile::replaceText(const std::string& text) {
    if (text_.find('\0') != std::string::npos) {
        throw ToolFailure(path_ +
                          " contains a NUL byte; readers see only the text before it, so the file is " +
                          "left as it is");
    }
    writeOutput(path_, isEnciphered_ ? encipher(text) : text);
    text_ = text;
}

}  // namespace dovrel::tools
