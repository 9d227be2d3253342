// Outcome: the reply or the status that ends an exchange with a client.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "InterProcessCommunication/POSTransferObj.h"

namespace merrowd {

using dovrel::POSTransferObj;

struct Outcome {
    /// The bytes of the reply's direct parameter, even if they are not a transfer object. Null if the
    /// reply has no direct parameter.
    std::unique_ptr<POSTransferObj> parameter;
    bool isSilent = false;   ///< the event gets no reply
    int16_t status = 0;      ///< status of the event, as the platform reports it
    bool endServer = false;  ///< the server ends after this reply ...
    bool vanish = false;     ///< ... as if it had crashed
};

/// Return a parameter with these bytes.
std::unique_ptr<POSTransferObj> makeParameter(const void* bytes, size_t length);
std::unique_ptr<POSTransferObj> makeParameter(const std::string& text);

}  // namespace merrowd
