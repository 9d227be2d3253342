// Receives events from the transport. Private to the layer.
#pragma once

#include "portability/transport/RequestHandler.h"

namespace portability {

/// Interprets each request as the image of an event and dispatches the event. A sender of a damaged image
/// is disconnected.
class EventReceiver final : public RequestHandler {
  public:
    bool handle(const ReceivedFrame& request, pid_t sender, ReplySender& reply) override;
};

}  // namespace portability
