#include "tools/doctor/InterfaceVersion.h"

#include <memory>
#include <utility>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/IPC_Info.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/exceptions/POSException.h"
#include "platform/trace/StatusNames.h"

namespace dovrel::tools {

namespace {

// Sends one request to a server that runs. Never launches one, and never repeats a request.
std::unique_ptr<POSTransferObj> sendOnce(POSTransferObj& request) {
    IPC_Info exchange;
    ByteBlock bytes = request.copyWireForm();
    exchange.setSendBuffer(std::move(bytes.data), bytes.length);
    const int32_t status = Client_to_POS_Communicator().SendAndReceive(exchange);
    std::unique_ptr<POSTransferObj> reply = exchange.takeReplyObject();
    if (status != noErr)
        throw new POSException(("the exchange failed: status " + statusText(status)).c_str());
    POSTransferObjTrader::CheckTransferObjReply(reply);
    if (reply == nullptr) throw new POSException("the server refused the request");
    return reply;
}

}  // namespace

uint32_t queryInterfaceVersion() {
    POSTransferObj request(kTransferKindStandard, kMessageKindRequest, posCommand::kQueryInterfaceVersion);
    return sendOnce(request)->readUInt32(posField::kInterfaceVersion);
}

}  // namespace dovrel::tools
