// Fuzz target for byte array lists: every list that can be read is the same list after it
// is written and read again.

#include <memory>
#include <vector>

#include "FuzzTarget.h"
#include "client/exceptions/CPPException.h"
#include "serialization/ByteArrayList.h"
#include "serialization/CPPExpandingByteArray.h"

namespace {

using namespace dovrel;

bool read(const CPPByteArray& block, std::vector<CPPByteArray>& list) {
    try {
        readByteArrayList(block, list);
        return true;
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        FUZZ_CHECK(failure->getTypeCode() == 2 || failure->getTypeCode() == 3);
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CPPByteArray block;
    block.set(data, static_cast<uint32_t>(size));
    std::vector<CPPByteArray> list;
    if (!read(block, list)) return 0;

    CPPExpandingByteArray written;
    writeByteArrayList(list, written);
    std::vector<CPPByteArray> again;
    FUZZ_CHECK(read(written, again));
    FUZZ_CHECK(again.size() == list.size());
    for (size_t i = 0; i < list.size(); ++i) {
        FUZZ_CHECK(again[i].compare(list[i]) == 0);
    }
    return 0;
}
