// Writes structured log files: a title line and typed entries in the line grammar (LineGrammar.h), made for
// reading by people. Long byte arrays are broken into lines of 16 bytes, and texts may hold line feeds.
//
// The writer appends to a text of its owner's; who puts that into a file, and when, is not its business.
#pragma once

#include <cstdint>
#include <string>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class LogFileWriter {
  public:
    static constexpr uint32_t kBytesPerLine = 16;

    /// Appends to `output`, which must outlive the writer. One thread at a time.
    explicit LogFileWriter(std::string& output) : output_(output) {}

    /// The title stands at the beginning of a file; LogFileReader compares it.
    void writeTitle(const std::string& title);

    void writeInt(const std::string& key, int32_t value);

    /// Line feeds of the value are written as "chg-lf"; LogFileReader::getText turns them back.
    void writeString(const std::string& key, const std::string& value);

    /// 32 upper-case hexadecimal digits to a line, the first ones on the line of the type word.
    void writeBinary(const std::string& key, const void* bytes, uint32_t length);
    void writeBinary(const std::string& key, const CPPByteArray& value);

  private:
    std::string& output_;
};

}  // namespace dovrel
