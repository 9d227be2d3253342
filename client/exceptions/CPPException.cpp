#include "client/exceptions/CPPException.h"

#include <cstring>
#include <utility>

namespace dovrel {

std::unique_ptr<char[]> copyText(const char* text) {
    if (text == nullptr || *text == '\0') return nullptr;
    const size_t bytes = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[bytes]);
    std::memcpy(copy.get(), text, bytes);
    return copy;
}

CPPException::CPPException() : CPPException(nullptr) {}

CPPException::CPPException(const char* message, int64_t code)
    : message_(copyText(message)), detail_(copyText(kDefaultDetail)), code_(code) {}

CPPException::CPPException(const CPPException& other)
    : message_(copyText(other.getMessage())), detail_(copyText(other.getDetail())), code_(other.code_) {}

CPPException& CPPException::operator=(const CPPException& other) {
    // Both texts are copied before anything changes. So nothing has changed if the second copy fails, and
    // self-assignment works without a special case.
    std::unique_ptr<char[]> message = copyText(other.getMessage());
    std::unique_ptr<char[]> detail = copyText(other.getDetail());
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
    if (message != nullptr) message_ = copyText(message);
}

void CPPException::setDetail(const char* detail) {
    if (detail != nullptr) detail_ = copyText(detail);
}

}  // namespace dovrel
