// SessionOperationsTest: a session with a short function for each operation.
#pragma once

#include <string>
#include <vector>

#include "tests/client/SessionTest.h"

namespace dovrel::test {

/// Calls each operation with valid arguments. The outputs contain garbage before the call.
class SessionOperationsTest : public SessionTest {
  protected:
    uint32_t registerHost(uint32_t* applicationId) {
        return posRegisterApplicationWithClasses("Host", &identifier_, 1, nullptr, 0, applicationId);
    }
    uint32_t instantiate(uint32_t applicationId) {
        object_ = this;
        return posInstantiateObject(applicationId, &identifier_, &object_);
    }
    uint32_t call(uint32_t applicationId) {
        fillOutputs();
        return posCallMethod(applicationId, &identifier_, "add", nullptr, 0, &result_, &resultLength_);
    }
    uint32_t deleteObject(uint32_t applicationId) { return posDeleteObject(applicationId, &identifier_); }
    uint32_t execute(uint32_t applicationId) {
        fillOutputs();
        return posExecuteCMD(applicationId, &identifier_, 16, &identifier_, 16, &result_, &resultLength_);
    }
    uint32_t getInfo(uint32_t applicationId) {
        result_ = reinterpret_cast<uint8_t*>(this);
        infoLength_ = 77;
        return posGetInfo(applicationId, "about", 5, &result_, &infoLength_);
    }

    void fillOutputs() {
        result_ = reinterpret_cast<uint8_t*>(this);
        resultLength_ = 77;
    }

    /// Returns true if the operation released the lock, so that another operation does not block.
    bool isUnlocked() {
        uint8_t* info = nullptr;
        int32_t length = 0;
        const bool answered = posGetInfo(0, "\x60\x01", 2, &info, &length) == POS_OK;
        posDeleteDLLHeapData(info);
        return answered;
    }

    std::vector<ShownAlert> oneReport(const std::string& application, const std::string& message,
                                      const std::string& explanation) const {
        return {{kErrorTitle, reportBody(application, message, explanation), kOK}};
    }

    Identifier name_{"Counter"};
    void* identifier_ = name_.bytes();
    void* null_ = nullptr;
    void* object_ = nullptr;
    uint8_t* result_ = nullptr;
    uint32_t resultLength_ = 0;
    int32_t infoLength_ = 0;
};

}  // namespace dovrel::test
