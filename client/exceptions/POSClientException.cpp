#include "client/exceptions/POSClientException.h"

#include "client/exceptions/OwnedText.h"

namespace dovrel {

POSClientException::POSClientException(const char* text) : text_(copyOfText(text)) {}

POSClientException::~POSClientException() = default;

}  // namespace dovrel
