// The result of decoding an input. Offsets count the bytes of the whole input, also in blocks inside it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "serialization/ByteBlock.h"

namespace dovrel::tools {

/// A header, a part, a field or an element.
struct DecodedItem {
    uint32_t offset = 0;
    uint32_t length = 0;             ///< in bytes, with the header of a part
    std::optional<uint32_t> number;  ///< the tag of a part
    std::string name;
    std::optional<uint32_t> value;  ///< of an item that is a number
    std::string text;               ///< the value for people, in UTF-8; "" if there is none
    ByteView data;                  ///< the bytes after the header of the part; they belong to the input
    std::vector<DecodedItem> items;
};

struct Finding {
    enum class Severity {
        kNote,    ///< unusual, but readers accept it
        kProblem  ///< readers reject the bytes, or do not find what they need
    };

    Severity severity;
    uint32_t offset;
    std::string text;
};

struct Decoded {
    std::string kind;     ///< "transfer object" and so on
    std::string summary;  ///< what the input is in detail; may be empty
    uint32_t size = 0;    ///< of the input in bytes
    std::vector<DecodedItem> items;
    std::vector<Finding> findings;

    void addNote(uint32_t offset, const std::string& text) {
        findings.push_back({Finding::Severity::kNote, offset, text});
    }
    void addProblem(uint32_t offset, const std::string& text) {
        findings.push_back({Finding::Severity::kProblem, offset, text});
    }
    bool hasProblems() const {
        return std::any_of(findings.begin(), findings.end(), [](const Finding& finding) {
            return finding.severity == Finding::Severity::kProblem;
        });
    }
};

}  // namespace dovrel::tools
