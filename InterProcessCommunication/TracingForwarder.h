// TracingForwarder: passes everything to another forwarder and traces it.
#pragma once

#include <memory>
#include <string>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "platform/trace/Trace.h"

namespace dovrel {

/// Returns and throws exactly what the other forwarder returns and throws. The process's trace lives as long
/// as this object.
class TracingForwarder : public POSTransferObjForwarder {
  public:
    /// `setting` is the text of TraceSetting.h. Throws std::bad_alloc.
    TracingForwarder(std::unique_ptr<POSTransferObjForwarder> traced, const std::string& setting);
    TracingForwarder(const TracingForwarder&) = delete;
    TracingForwarder& operator=(const TracingForwarder&) = delete;
    ~TracingForwarder() override;

    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;
    void ConnectToPOS(uint32_t hint) override;
    void CheckConnection() override;
    CPPByteArray GetClientProcessID() override;

  private:
    /// Constructed first and destroyed last, so that it gets the other forwarder's last entry.
    Trace trace_;
    std::unique_ptr<POSTransferObjForwarder> traced_;
};

/// `forwarder` inside a TracingForwarder if the environment variable POS_TRACE is set, else `forwarder`.
std::unique_ptr<POSTransferObjForwarder> traceIfRequested(std::unique_ptr<POSTransferObjForwarder> forwarder);

}  // namespace dovrel
