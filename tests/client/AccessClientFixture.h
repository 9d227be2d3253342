// AccessClientFixture: a client's registry over a scripted forwarder.
#pragma once

#include <string>
#include <vector>

#include "client/POSAccessClient.h"
#include "tests/client/SessionTest.h"
#include "tests/support/library/Bytes.h"

namespace dovrel::test {

inline std::string padded(const std::string& name) {
    return name + std::string(16 - name.size(), '\0');
}

class AccessClientFixture : public SystemRootTest {
  protected:
    AccessClientFixture() { client_.setForwarder(&forwarder_); }

    uint32_t registered(uint32_t identifier, const char* name = "Editor", uint32_t flags = 0,
                        const std::vector<std::string>& classNames = {}) {
        forwarder_.answer(posCommand::kRegisterApplication, registration(identifier, flags));
        const auto result = client_.registerApplication(name, classList(classNames), CPPByteArray());
        EXPECT_EQ(result.outcome, POSOutcome::kDone);
        return result.value;
    }

    static std::vector<CPPClassID> classList(const std::vector<std::string>& names) {
        std::vector<CPPClassID> classes;
        for (const std::string& name : names)
            classes.emplace_back(arrayOf(padded(name)));
        return classes;
    }

    POSResult<POSInstance> instantiate(uint32_t applicationId, uint32_t executer = kNoExecuter) {
        return client_.instantiateObject(applicationId, counter_, executer);
    }

    const CPPClassID counter_{arrayOf(padded("Counter"))};
    const CPPObjectID object_{arrayOf(padded("an object"))};
    AcceptingForwarder forwarder_;
    POSAccessClient client_;
};

}  // namespace dovrel::test
