// ProtectedObjectServerInterface: the operations of a protected object server as one C++ interface. It is for
// code that replaces the server inside the process. The client does not use it: the client reaches its server
// through the trader.
//
// The default implementation of every operation does nothing and leaves its outputs unchanged, so a
// replacement overrides only the operations that it supports. The order of the virtual functions is fixed:
// the destructors, then the seven operations in the order below.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "serialization/Identifiers.h"

namespace dovrel {

class ProtectedObjectServerInterface {
  public:
    virtual ~ProtectedObjectServerInterface();

    virtual void registerApplication(const std::string& name, const std::vector<CPPClassID>& classes,
                                     uint32_t& applicationId);
    virtual void unregisterApplication(uint32_t applicationId);
    virtual void instantiateObject(uint32_t applicationId, const CPPClassID& classId, CPPObjectID& objectId);
    virtual void callMethod(uint32_t applicationId, const CPPObjectID& objectId,
                            const std::string& methodName, const CPPByteArray& parameters,
                            CPPByteArray& result);
    virtual void deleteObject(uint32_t applicationId, const CPPObjectID& objectId);
    virtual void executeCommand(uint32_t applicationId, const CPPByteArray& command,
                                const CPPByteArray& argument, CPPByteArray& result);
    virtual void getInformation(uint32_t applicationId, const CPPByteArray& request,
                                CPPByteArray& information);

  protected:
    ProtectedObjectServerInterface() = default;
    ProtectedObjectServerInterface(const ProtectedObjectServerInterface&) = default;
    ProtectedObjectServerInterface& operator=(const ProtectedObjectServerInterface&) = default;
};

}  // namespace dovrel
