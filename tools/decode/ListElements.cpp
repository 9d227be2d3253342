#include "tools/decode/ListElements.h"

#include <set>

#include "InterProcessCommunication/TransferObjText.h"
#include "serialization/ByteArrayList.h"

namespace dovrel::tools {

namespace {

struct ListState {
    std::optional<uint32_t> count;  ///< the number of elements that the list says it has
    std::set<uint32_t> tags;
};

std::string elementName(uint32_t index) {
    return "element " + std::to_string(index);
}

// Returns the index of the element with the tag, or nothing if elements do not have such tags.
std::optional<uint32_t> elementIndex(uint32_t tag) {
    const uint32_t first = byteArrayListElementTag(0);
    const uint32_t step = byteArrayListElementTag(1) - first;
    if (tag < first || (tag - first) % step != 0) return std::nullopt;
    return (tag - first) / step;
}

void describePart(DecodedItem& part, const ListState& list, Decoded& result) {
    if (*part.number == kByteArrayListCountTag) {
        part.name = "number of elements";
        part.value = fieldNumber(part.data);
        part.text = std::to_string(*part.value);
        return;
    }
    const std::optional<uint32_t> index = elementIndex(*part.number);
    if (index && (!list.count || *index < *list.count)) {
        part.name = elementName(*index);
    } else {
        result.addNote(part.offset, "the list does not use part " + std::to_string(*part.number));
    }
}

void findMissingElement(const ListState& list, uint32_t end, Decoded& result) {
    if (!list.count) return result.addProblem(end, "part 0 (number of elements) is missing");
    uint32_t index = 0;
    while (index < *list.count && list.tags.count(byteArrayListElementTag(index)) == 1)
        ++index;
    if (index == *list.count) return;
    result.addProblem(end, "part " + std::to_string(byteArrayListElementTag(index)) + " (" +
                               elementName(index) + " of " + std::to_string(*list.count) + ") is missing");
}

}  // namespace

std::string describeElements(std::vector<DecodedItem>& parts, uint32_t end, bool isComplete,
                             Decoded& result) {
    ListState list;
    for (const DecodedItem& part : parts) {
        if (*part.number == kByteArrayListCountTag && !list.count) list.count = fieldNumber(part.data);
        list.tags.insert(*part.number);
    }
    for (DecodedItem& part : parts)
        describePart(part, list, result);
    if (isComplete) findMissingElement(list, end, result);
    if (!list.count) return "unknown number of elements";
    return std::to_string(*list.count) + (*list.count == 1 ? " element" : " elements");
}

}  // namespace dovrel::tools
