// What an endpoint does with the requests that it receives. Private to the layer.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "portability/transport/Channel.h"

namespace portability {

/// The transport carries the bytes of a request and does not read them; the handler does.
class RequestHandler {
  public:
    virtual ~RequestHandler() = default;

    /// Sends the reply to one request.
    class ReplySender {
      public:
        /// `result` is 0, or the error that the sender's call returns; the image is then not looked at. After
        /// `failed` (no memory for the image) another reply may be sent.
        virtual Channel::Sent send(int32_t result, const ImageMemory& image) = 0;

      protected:
        ~ReplySender() = default;
    };

    /// Handles a request of the process `sender`, and passes the reply to `reply` if the sender waits for
    /// one. The request is valid during the call only. Another process may be able to change its bytes
    /// meanwhile. False drops the sender: its request breaks the rules, or its reply could not be delivered.
    /// Throws nothing.
    virtual bool handle(const ReceivedFrame& request, pid_t sender, ReplySender& reply) = 0;
};

}  // namespace portability
