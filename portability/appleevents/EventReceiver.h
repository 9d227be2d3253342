// From the transport to the handlers of events. Private to the layer.
#pragma once

#include "portability/transport/RequestHandler.h"

namespace portability {

/// Takes each request for the image of an event and has it dispatched. A damaged image drops its sender.
class EventReceiver final : public RequestHandler {
  public:
    bool handle(const ReceivedFrame& request, pid_t sender, ReplySender& reply) override;
};

}  // namespace portability
