#include "client/ProtectedObjectServerInterface.h"

namespace dovrel {

ProtectedObjectServerInterface::~ProtectedObjectServerInterface() = default;

void ProtectedObjectServerInterface::registerApplication(const std::string&, const std::vector<CPPClassID>&,
                                                         uint32_t&) {}

void ProtectedObjectServerInterface::unregisterApplication(uint32_t) {}

void ProtectedObjectServerInterface::instantiateObject(uint32_t, const CPPClassID&, CPPObjectID&) {}

void ProtectedObjectServerInterface::callMethod(uint32_t, const CPPObjectID&, const std::string&,
                                                const CPPByteArray&, CPPByteArray&) {}

void ProtectedObjectServerInterface::deleteObject(uint32_t, const CPPObjectID&) {}

void ProtectedObjectServerInterface::executeCommand(uint32_t, const CPPByteArray&, const CPPByteArray&,
                                                    CPPByteArray&) {}

void ProtectedObjectServerInterface::getInformation(uint32_t, const CPPByteArray&, CPPByteArray&) {}

}  // namespace dovrel
