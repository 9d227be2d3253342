#include "client/exceptions/CPPException.h"

#include <utility>

#include "client/exceptions/OwnedText.h"

namespace dovrel {

CPPException::CPPException() : CPPException(nullptr) {}

CPPException::CPPException(const char* message, int64_t code)
    : message_(copyOfText(message)), detail_(copyOfText(kDefaultDetail)), code_(code) {}

CPPException::CPPException(const CPPException& other)
    : message_(copyOfText(other.getMessage())), detail_(copyOfText(other.getDetail())), code_(other.code_) {}

CPPException& CPPException::operator=(const CPPException& other) {
    // Both texts are copied before anything changes. So nothing has changed if the second copy fails, and
    // self-assignment works without a special case.
    std::unique_ptr<char[]> message = copyOfText(other.getMessage());
    std::unique_ptr<char[]> detail = copyOfText(other.getDetail());
    message_ = std::move(message);
    detail_ = std::move(detail);
    code_ = other.code_;
    return *this;
}

CPPException::~CPPException() = default;

uint32_t CPPException::getTypeCode() const {
    return exceptionTypeCode::kCPPException;
}

void CPPException::setMessage(const char* message) {
    if (message != nullptr) message_ = copyOfText(message);
}

void CPPException::setDetail(const char* detail) {
    if (detail != nullptr) detail_ = copyOfText(detail);
}

}  // namespace dovrel
