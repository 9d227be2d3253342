// Fuzz target for pairs of readers that read the same bytes in two ways. Both must accept the same inputs and
// find the same content. The first byte of the input selects the pair:
//
// - 0: a structured block in the caller's array, and in a copy,
// - 1: an event in received memory, and in a copy,
// - 2: a properties text that the store takes over, that it copies, and that is read through a cursor object.

#include <CoreServices/CoreServices.h>

#include <cstring>
#include <memory>
#include <string>

#include "FuzzTarget.h"
#include "client/exceptions/CPPException.h"
#include "portability/appleevents/EventStorage.h"
#include "serialization/StructuredByteArrayReader.h"
#include "serialization/StructuredCharArrayReader.h"
#include "settings/Properties.h"
#include "settings/PropertiesStringObj.h"

namespace {

using namespace dovrel;

constexpr uint32_t kTags = 256;

// Returns the type code of the exception that `read` throws, or 0.
template <typename Read>
uint32_t catchFailure(Read read) {
    try {
        read();
        return 0;
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        FUZZ_CHECK(failure->getTypeCode() != 0);
        return static_cast<uint32_t>(failure->getTypeCode());
    }
}

void checkPart(const StructuredByteArrayReader& one, const StructuredCharArrayReader& other, uint32_t tag) {
    FUZZ_CHECK(one.hasPart(tag) == other.hasPart(tag));
    if (!one.hasPart(tag)) return;
    FUZZ_CHECK(one.getPartLength(tag) == other.getPartLength(tag));
    FUZZ_CHECK(one.readStringPart(tag) == other.readStringPart(tag));
    FUZZ_CHECK(one.readUInt32Part(tag) == other.readUInt32Part(tag));
    const ByteView view = one.viewPart(tag);
    const std::unique_ptr<CPPByteArray> part(other.getPart(tag));
    FUZZ_CHECK(part->compare(view.data, view.length) == 0);
}

void checkBlock(const uint8_t* data, size_t size) {
    CPPByteArray bytes;
    bytes.set(data, static_cast<uint32_t>(size));
    StructuredByteArrayReader inPlace;
    StructuredCharArrayReader copying;
    const uint32_t failure = catchFailure([&] { inPlace.initialize(&bytes); });
    FUZZ_CHECK(failure == catchFailure([&] { copying.setBuffer(data, static_cast<uint32_t>(size)); }));
    FUZZ_CHECK(inPlace.getTypeNumber() == copying.getTypeNumber());
    for (uint32_t tag = 0; tag < kTags; ++tag)
        checkPart(inPlace, copying, tag);
}

void checkEvent(const uint8_t* data, size_t size) {
    using namespace portability;
    const EventStorage inPlace(data, size, nullptr);
    const std::unique_ptr<EventStorage> copy = EventStorage::makeCopy(data, size);
    FUZZ_CHECK(inPlace.isWhole() == copy->isWhole());
    if (!inPlace.isWhole()) return;
    ImageWalker walker(data, size);
    ImageItem item;
    while (walker.next(item)) {
        EventValue one;
        EventValue other;
        const auto kind = static_cast<ItemKind>(item.header.kind);
        FUZZ_CHECK(inPlace.find(kind, item.header.keyword, one));
        FUZZ_CHECK(copy->find(kind, item.header.keyword, other));
        FUZZ_CHECK(one.type == other.type && one.size == other.size);
        FUZZ_CHECK(one.size == 0 || std::memcmp(one.data, other.data, one.size) == 0);
    }
}

std::string saved(const Properties& store) {
    std::string text;
    store.save(text);
    return text;
}

void checkProperties(const std::string& input) {
    std::string text = input;
    Properties copying;
    copying.load(text, true);
    FUZZ_CHECK(text == input);
    const std::string expected = saved(copying);

    Properties through;
    PropertiesStringObj cursor(text);
    through.load(cursor);
    FUZZ_CHECK(saved(through) == expected);

    Properties takingOver;
    takingOver.load(text, false);
    FUZZ_CHECK(text.empty());
    FUZZ_CHECK(saved(takingOver) == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    switch (data[0]) {
        case 0:
            checkBlock(data + 1, size - 1);
            break;
        case 1:
            checkEvent(data + 1, size - 1);
            break;
        case 2:
            checkProperties(std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
            break;
        default:
            break;
    }
    return 0;
}
