// TracingForwarder: passes every call on to another forwarder and traces it.
#pragma once

#include <memory>
#include <string>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "platform/trace/Trace.h"

namespace dovrel {

/// Returns and throws exactly what the other forwarder returns and throws. The trace of the process exists as
/// long as this object.
class TracingForwarder : public POSTransferObjForwarder {
  public:
    /// `setting` is a text as TraceSetting.h describes it. Throws std::bad_alloc.
    TracingForwarder(std::unique_ptr<POSTransferObjForwarder> traced, const std::string& setting);
    TracingForwarder(const TracingForwarder&) = delete;
    TracingForwarder& operator=(const TracingForwarder&) = delete;
    ~TracingForwarder() override;

    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;
    void ConnectToPOS(uint32_t hint) override;
    void CheckConnection() override;
    CPPByteArray GetClientProcessID() override;

  private:
    /// Constructed first and destroyed last, so that it still records the other forwarder's last entry.
    Trace trace_;
    std::unique_ptr<POSTransferObjForwarder> traced_;
};

/// Returns `forwarder`, wrapped in a TracingForwarder if the environment variable POS_TRACE is set.
std::unique_ptr<POSTransferObjForwarder> traceIfRequested(std::unique_ptr<POSTransferObjForwarder> forwarder);

}  // namespace dovrel
