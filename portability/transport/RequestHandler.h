// The interface for handling the requests that an endpoint receives. Private to the layer.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "portability/transport/Channel.h"

namespace portability {

/// Handles requests. The transport carries the bytes of a request but does not interpret them; the
/// handler does.
class RequestHandler {
  public:
    virtual ~RequestHandler() = default;

    /// Sends the reply to one request.
    class ReplySender {
      public:
        /// Sends the reply. `result` is 0 or the error that the sender's call returns; in the case of an
        /// error, the image is ignored. After Channel::Sent::failed (no memory for the image) another reply
        /// may be sent.
        virtual Channel::Sent send(int32_t result, const MessageMemory& image) = 0;

      protected:
        ~ReplySender() = default;
    };

    /// Handles a request from the process `sender`, and sends the reply with `reply` if the sender waits for
    /// one. The request is valid only during the call. Another process may be able to change its bytes during
    /// that time.
    ///
    /// Returns false to disconnect the sender because its request violates the protocol or its reply could
    /// not be delivered. Throws nothing.
    virtual bool handle(const ReceivedFrame& request, pid_t sender, ReplySender& reply) = 0;
};

}  // namespace portability
