#include "server/Outcome.h"

namespace merrowd {

std::unique_ptr<POSTransferObj> makeParameter(const void* bytes, size_t length) {
    auto object = std::make_unique<POSTransferObj>();
    object->copyBytesFrom(bytes, static_cast<uint32_t>(length));
    return object;
}

std::unique_ptr<POSTransferObj> makeParameter(const std::string& text) {
    return makeParameter(text.data(), text.size());
}

}  // namespace merrowd
