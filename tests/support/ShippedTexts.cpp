#include "tests/support/ShippedTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "tests/support/Encodings.h"

namespace dovrel::test {

namespace {

std::string utf8OfMacRoman(const std::string& text) {
    const std::optional<std::string> converted = toUTF8(text, "MACINTOSH");
    EXPECT_TRUE(converted) << text;
    return converted.value_or("");
}

std::string asShown(std::string text) {
    const size_t mnemonic = text.find('_');
    if (mnemonic != std::string::npos) text.erase(mnemonic, 1);
    for (size_t at = 0; (at = text.find("SDNL", at)) != std::string::npos;)
        text.replace(at, 4, "\r");
    return utf8OfMacRoman(text);
}

}  // namespace

ShippedTexts::ShippedTexts(const std::string& path, const std::string& language) {
    std::ifstream file(path, std::ios::binary);
    std::string key;
    bool isWanted = false;
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, 2, "//") == 0) key = line.substr(2);
        if (line.compare(0, 4, "STR:") != 0) continue;
        if (key == "LANGUAGE") isWanted = line == "STR:" + language;
        if (isWanted) texts_.emplace(key, asShown(line.substr(4)));
    }
    EXPECT_FALSE(texts_.empty()) << path << " has no section " << language;
}

std::string ShippedTexts::text(const std::string& key) const {
    const auto found = texts_.find(key);
    if (found != texts_.end()) return found->second;
    ADD_FAILURE() << "there is no text " << key;
    return "";
}

std::string ShippedTexts::failureBody(const std::string& application, const std::string& message,
                                      const std::string& explanationKey) const {
    return text("DLL_ERROR_ERRORMESSAGEHEAD_PART1") + application + text("DLL_ERROR_ERRORMESSAGEHEAD_PART2") +
           message + "\r\r" + text(explanationKey);
}

std::string ShippedTexts::unshownAlert(std::string body) {
    std::replace(body.begin(), body.end(), '\r', '\n');
    return "Couldn't initialise NSApplication! No Error dialogue shown; message of the failed dialogue:  \n "
           "\"" +
           body + "\"\n";
}

}  // namespace dovrel::test
