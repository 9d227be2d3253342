#include "client/exceptions/StructuredDataExceptions.h"

namespace dovrel {

uint32_t PartNotFoundException::getTypeCode() const {
    return exceptionTypeCode::kPartNotFound;
}

uint32_t StructuredReaderNotInitializedException::getTypeCode() const {
    return exceptionTypeCode::kStructuredReaderNotInitialized;
}

uint32_t StructuredWriteFailedException::getTypeCode() const {
    return exceptionTypeCode::kStructuredWriteFailed;
}

uint32_t StructuredWriterNotInitializedException::getTypeCode() const {
    return exceptionTypeCode::kStructuredWriterNotInitialized;
}

}  // namespace dovrel
