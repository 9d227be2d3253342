#include "InterProcessCommunication/RecordingForwarder.h"

#include <new>
#include <utility>

#include "InterProcessCommunication/POSTransferObj.h"
#include "client/exceptions/CPPException.h"
#include "platform/Environment.h"

namespace dovrel {

namespace {

constexpr char kRecordVariable[] = "POS_RECORD";

/// Measures an exchange. It starts when it is constructed.
class ExchangeTimer {
  public:
    ExchangeTime read() const {
        const std::chrono::duration<double, std::micro> passed = std::chrono::steady_clock::now() - start_;
        return {begin_, std::chrono::microseconds(static_cast<int64_t>(passed.count()))};
    }

  private:
    const std::chrono::system_clock::time_point begin_ = std::chrono::system_clock::now();
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace

RecordingForwarder::RecordingForwarder(std::unique_ptr<POSTransferObjForwarder> recorded,
                                       const std::string& path)
    : recorded_(std::move(recorded)), file_(path) {}

RecordingForwarder::~RecordingForwarder() = default;

POSTransferObj* RecordingForwarder::ForwardTransferObj(POSTransferObj& request) {
    const ExchangeTimer timer;
    try {
        POSTransferObj* const reply = recorded_->ForwardTransferObj(request);
        file_.addReply(timer.read(), request, *reply);
        return reply;
    } catch (const CPPException* passing) {
        file_.addFailure(timer.read(), request, passing->getMessage());
        throw;
    } catch (const std::bad_alloc&) {
        file_.addFailure(timer.read(), request, "out of memory");
        throw;
    }
}

void RecordingForwarder::ConnectToPOS(uint32_t hint) {
    recorded_->ConnectToPOS(hint);
}

void RecordingForwarder::CheckConnection() {
    recorded_->CheckConnection();
}

CPPByteArray RecordingForwarder::GetClientProcessID() {
    return recorded_->GetClientProcessID();
}

std::unique_ptr<POSTransferObjForwarder> recordIfRequested(
    std::unique_ptr<POSTransferObjForwarder> forwarder) {
    const std::string path = environmentVariable(kRecordVariable);
    if (path.empty()) return forwarder;
    return std::make_unique<RecordingForwarder>(std::move(forwarder), path);
}

}  // namespace dovrel
