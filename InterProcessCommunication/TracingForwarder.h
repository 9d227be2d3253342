// TracingForwarder: has another forwarder carry everything, and writes down what it did.
#pragma once

#include <memory>
#include <string>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "platform/Trace.h"

namespace dovrel {

/// Behaves as the forwarder that it stands in front of, to the answers and the failures. Its life is that of
/// the process's trace.
class TracingForwarder : public POSTransferObjForwarder {
  public:
    /// `setting` is the text of TraceSetting.h. std::bad_alloc when memory runs out.
    TracingForwarder(std::unique_ptr<POSTransferObjForwarder> traced, const std::string& setting);
    TracingForwarder(const TracingForwarder&) = delete;
    TracingForwarder& operator=(const TracingForwarder&) = delete;
    ~TracingForwarder() override;

    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;
    void ConnectToPOS(uint32_t hint) override;
    void CheckConnection() override;
    CPPByteArray GetClientProcessID() override;

  private:
    /// First made and last destroyed, so that it has the other's last line.
    Trace trace_;
    std::unique_ptr<POSTransferObjForwarder> traced_;
};

/// The forwarder behind a trace where the environment variable POS_TRACE asks for one, else itself.
std::unique_ptr<POSTransferObjForwarder> tracedAsAsked(std::unique_ptr<POSTransferObjForwarder> forwarder);

}  // namespace dovrel
