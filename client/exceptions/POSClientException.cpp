#include "client/exceptions/POSClientException.h"

#include "client/exceptions/CPPException.h"

namespace dovrel {

POSClientException::POSClientException(const char* text) : text_(copyText(text)) {}

POSClientException::~POSClientException() = default;

}  // namespace dovrel
