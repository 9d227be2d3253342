// AccessClientFixture: a client's registry over a scripted forwarder.
#pragma once

#include <string>
#include <vector>

#include "client/POSAccessClient.h"
#include "tests/client/SessionTest.h"

namespace dovrel::test {

inline std::string padded(const std::string& name) {
    return name + std::string(16 - name.size(), '\0');
}

class AccessClientFixture : public SystemRootTest {
  protected:
    AccessClientFixture() { client_.setForwarder(&forwarder_); }

    uint32_t registered(uint32_t identifier, const char* name = "Editor", uint32_t flags = 0,
                        std::vector<std::string> classNames = {}) {
        std::vector<Identifier> classes(classNames.begin(), classNames.end());
        std::vector<void*> list;
        for (Identifier& one : classes)
            list.push_back(one.bytes());
        uint32_t applicationId = 0;
        forwarder_.answer(posCommand::kRegisterApplication, registration(identifier, flags));
        EXPECT_TRUE(client_.registerApplication(name, list.data(), static_cast<uint32_t>(list.size()),
                                                nullptr, 0, applicationId));
        return applicationId;
    }

    bool instantiate(uint32_t applicationId, void* const* classId, void** objectId,
                     uint32_t executer = kNoExecuter) {
        return client_.instantiateObject(applicationId, classId, objectId, executer, message_);
    }
    bool call(void* const* objectId, const char* method, const void* parameters, uint32_t length) {
        return client_.callMethod(1, nullptr, objectId, method, static_cast<const uint8_t*>(parameters),
                                  length, &result_, &resultLength_, message_);
    }

    std::string takeResult() {
        const std::string text(reinterpret_cast<const char*>(result_), resultLength_);
        delete[] result_;
        result_ = nullptr;
        return text;
    }

    AcceptingForwarder forwarder_;
    POSAccessClient client_;
    POSServerMessage message_;
    Identifier counterName_{"Counter"};
    void* counter_ = counterName_.bytes();
    void* null_ = nullptr;
    uint8_t* result_ = nullptr;
    uint32_t resultLength_ = 0;
};

}  // namespace dovrel::test
