#include "tests/InterProcessCommunication/PreparedForwarder.h"

#include "client/exceptions/POSException.h"
#include "tests/support/library/Bytes.h"

namespace dovrel::test {

namespace {

constexpr char kBlockHeader[] = "41 73 41 6B 00 01 00 00 00 09 ";

std::string hexOfUInt32(uint32_t value, bool mostSignificantFirst) {
    CPPByteArray bytes;
    bytes.setFilled(4, 0);
    for (uint32_t i = 0; i < 4; ++i)
        bytes.setByte(mostSignificantFirst ? 3 - i : i, static_cast<uint8_t>(value >> 8 * i));
    return toHex(bytes);
}

}  // namespace

const char* const kProcessIdentity = "10 11 12 13 14 15 16 17";
const char* const kNormalAnswer = "00 00 00 00 00 00 00 04 01 00 00 00 00 00 00 01 00 00 00 04 0B 00 00 00 ";

PreparedForwarder::PreparedForwarder() {
    clientProcess = arrayFromHex(kProcessIdentity);
    onAnswer = [this](const POSTransferObj& reply) { answers_.add(&reply); };
}

void PreparedForwarder::answerBytes(const CPPByteArray& bytes) {
    answerNext([bytes](POSTransferObj&) {
        auto reply = std::make_unique<POSTransferObj>();
        reply->copyBytesFrom(bytes);
        return reply;
    });
}

void PreparedForwarder::answerParts(const std::string& parts) {
    answerBytes(arrayFromHex(kBlockHeader + parts));
}

void PreparedForwarder::throwAtRequest(const char* text) {
    answerNext([text](POSTransferObj&) -> std::unique_ptr<POSTransferObj> { throw new POSException(text); });
}

void PreparedForwarder::throwAtConnect(const char* text) {
    onConnect = [text] { throw new POSException(text); };
}

std::string exceptionAnswer(uint32_t code, const std::string& text) {
    return uint32Part(0, 1) + uint32Part(1, 20) + part(150, toHex(makeArray(text))) + uint32Part(151, code);
}

std::string part(uint32_t number, const std::string& hexData) {
    return hexOfUInt32(number, true) + " " + hexOfUInt32(arrayFromHex(hexData).getSize(), true) + " " +
           hexData + " ";
}

std::string uint32Part(uint32_t number, uint32_t value) {
    return part(number, hexOfUInt32(value, false));
}

}  // namespace dovrel::test
