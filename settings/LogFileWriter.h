// Writes structured log files for people to read: a title line and typed entries in the line grammar
// (LineGrammar.h). Long byte arrays are split into lines of 16 bytes. Texts may contain line feeds.
//
// The writer only appends to a string of its caller, who writes that string to a file.
#pragma once

#include <cstdint>
#include <string>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class LogFileWriter {
  public:
    static constexpr uint32_t kBytesPerLine = 16;

    /// Appends to `output`, which must outlive the writer. Not thread-safe.
    explicit LogFileWriter(std::string& output) : output_(output) {}

    /// Writes the title. It must be the first line of the file; LogFileReader compares it.
    void writeTitle(const std::string& title);

    void writeInt(const std::string& key, int32_t value);

    /// Writes a string. Its line feeds become "chg-lf"; LogFileReader::getText restores them.
    void writeString(const std::string& key, const std::string& value);

    /// Writes bytes with 32 upper-case hexadecimal digits per line. The first digits are on
    /// the line of the type word.
    void writeBinary(const std::string& key, const void* bytes, uint32_t length);
    void writeBinary(const std::string& key, const CPPByteArray& value);

  private:
    std::string& output_;
};

}  // namespace dovrel
