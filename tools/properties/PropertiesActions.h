// The actions of the subcommands of "dovrel properties". Each throws a ToolFailure if it fails.
// PropertiesCommand.cpp describes the options.
#pragma once

#include <string>
#include <vector>

namespace dovrel::tools {

/// The options of all subcommands. Each uses some of them.
struct PropertiesOptions {
    std::string file;
    std::vector<std::string> files;
    std::string key;
    std::vector<std::string> keys;
    std::string value;
    std::string section;
    std::string sectionKey;
    std::string output = "-";
    bool isInteger = false;
    bool isString = false;
    bool isBytes = false;
    bool allowsComments = false;
    bool isInPlace = false;
    bool isJson = false;
};

/// Lists the entries on standard output, or all of them as JSON.
void showProperties(const PropertiesOptions& options);

/// Prints the value of one entry.
void getProperty(const PropertiesOptions& options);

/// Changes or adds one entry. The file keeps its old content if it cannot be written.
void setProperty(const PropertiesOptions& options);

/// Removes entries. Changes nothing if one of the keys does not exist.
void removeProperties(const PropertiesOptions& options);

/// Prints the problems of all files. If there are any, ends the subcommand with kFailed.
void checkProperties(const PropertiesOptions& options);

/// Converts from or to JSON, which it recognises by its first character.
void convertProperties(const PropertiesOptions& options);

/// Write the enciphered form of a file, or the text of an enciphered file.
void encipherFile(const PropertiesOptions& options);
void decipherFile(const PropertiesOptions& options);

}  // namespace dovrel::tools
