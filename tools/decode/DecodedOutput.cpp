#include "tools/decode/DecodedOutput.h"

#include "platform/text/TextConversions.h"
#include "platform/trace/TraceText.h"

namespace dovrel::tools {

namespace {

constexpr uint32_t kFewestOffsetDigits = 4;

std::string offsetText(uint32_t offset) {
    return numberToText(offset, 16, kFewestOffsetDigits);
}

void appendItems(std::string& lines, const std::vector<DecodedItem>& items, const std::string& indentation) {
    for (const DecodedItem& item : items) {
        lines += offsetText(item.offset) + "  " + indentation;
        if (item.number) lines += std::to_string(*item.number) + " ";
        lines += item.name + (item.text.empty() ? "" : " = " + item.text) + "\n";
        appendItems(lines, item.items, indentation + "  ");
    }
}

const char* severityName(Finding::Severity severity) {
    return severity == Finding::Severity::kProblem ? "problem" : "note";
}

nlohmann::ordered_json itemsToJson(const std::vector<DecodedItem>& items) {
    auto list = nlohmann::ordered_json::array();
    for (const DecodedItem& item : items) {
        nlohmann::ordered_json entry{{"offset", item.offset}, {"length", item.length}};
        if (item.number) entry["number"] = *item.number;
        entry["name"] = item.name;
        if (item.value) entry["value"] = *item.value;
        entry["text"] = item.text;
        entry["bytes"] = bytesToHexText(item.data.data, item.data.length);
        if (!item.items.empty()) entry["items"] = itemsToJson(item.items);
        list.push_back(entry);
    }
    return list;
}

}  // namespace

std::string toOutputText(const Decoded& decoded) {
    std::string lines = decoded.kind + ", " + byteCountText(decoded.size);
    lines += (decoded.summary.empty() ? "" : ": " + decoded.summary) + "\n";
    appendItems(lines, decoded.items, "");
    for (const Finding& finding : decoded.findings)
        lines += std::string(severityName(finding.severity)) + " at " + offsetText(finding.offset) + ": " +
                 finding.text + "\n";
    return lines;
}

nlohmann::ordered_json toJson(const Decoded& decoded) {
    auto findings = nlohmann::ordered_json::array();
    for (const Finding& finding : decoded.findings) {
        findings.push_back({{"offset", finding.offset},
                            {"severity", severityName(finding.severity)},
                            {"text", finding.text}});
    }
    return {{"kind", decoded.kind},
            {"summary", decoded.summary},
            {"size", decoded.size},
            {"items", itemsToJson(decoded.items)},
            {"findings", findings}};
}

}  // namespace dovrel::tools
