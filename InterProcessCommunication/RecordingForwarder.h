// RecordingForwarder: passes every call on to another forwarder and records the exchanges.
#pragma once

#include <memory>
#include <string>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "InterProcessCommunication/RecordingFile.h"

namespace dovrel {

/// Returns and throws exactly what the other forwarder returns and throws, whether or not the recording can be
/// written. Records each exchange when it has ended. Connecting is not recorded.
class RecordingForwarder : public POSTransferObjForwarder {
  public:
    /// `path` is the file of the recording (RecordingFile.h).
    RecordingForwarder(std::unique_ptr<POSTransferObjForwarder> recorded, const std::string& path);
    RecordingForwarder(const RecordingForwarder&) = delete;
    RecordingForwarder& operator=(const RecordingForwarder&) = delete;
    ~RecordingForwarder() override;

    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;
    void ConnectToPOS(uint32_t hint) override;
    void CheckConnection() override;
    CPPByteArray GetClientProcessID() override;

  private:
    const std::unique_ptr<POSTransferObjForwarder> recorded_;
    RecordingFile file_;
};

/// Returns `forwarder`, wrapped in a RecordingForwarder if the environment variable POS_RECORD names a file.
std::unique_ptr<POSTransferObjForwarder> recordIfRequested(
    std::unique_ptr<POSTransferObjForwarder> forwarder);

}  // namespace dovrel
