#include "client/POSAccessUserInteraction.h"

#include <cstring>
#include <functional>

#include "tests/client/SessionOperationsTest.h"
#include "tests/support/VirtualTable.h"

namespace dovrel {
namespace {

using test::Identifier;

class POSAccessUserInteractionTest : public test::SessionOperationsTest {};

TEST_F(POSAccessUserInteractionTest, VirtualOperations_AreTheDestructorsOnly) {
    EXPECT_EQ(test::VirtualSlots<POSAccessUserInteraction>::count(), 2u);
}

TEST_F(POSAccessUserInteractionTest, UnregisteredApplication_FailsAtOnceWithoutADialogAndClearsTheOutputs) {
    EXPECT_EQ(instantiate(5), POS_FAILURE);
    EXPECT_EQ(object_, nullptr);
    EXPECT_EQ(call(5), POS_FAILURE);
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
    EXPECT_EQ(deleteObject(5), POS_FAILURE);
    EXPECT_EQ(execute(5), POS_FAILURE);
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
    EXPECT_TRUE(dialog_->shown.empty());
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(POSAccessUserInteractionTest, ExecuteCMD_UnregisteredApplicationAndNullPointers_ShowsNothing) {
    EXPECT_EQ(posExecuteCMD(5, nullptr, 0, nullptr, 0, nullptr, nullptr), POS_FAILURE);
    EXPECT_TRUE(dialog_->shown.empty());
}

TEST_F(POSAccessUserInteractionTest, GetInfo_NeedsNoRegistrationAndNamesTheUnknownApplication) {
    EXPECT_EQ(getInfo(5), POS_OK);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(result_), static_cast<size_t>(infoLength_)), "information");
    posDeleteDLLHeapData(result_);

    forwarder_->answer(posCommand::kGetInformation, test::error(0, "no such thing"));
    EXPECT_EQ(getInfo(5), POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Unknown Application", "no such thing", "Stopped."));
}

TEST_F(POSAccessUserInteractionTest, GetInfo_InterfaceVersionBeforeAnyRegistration_IsSevenWithoutTheServer) {
    uint8_t* info = nullptr;
    int32_t length = 0;
    ASSERT_EQ(posGetInfo(0, "\x60\x01", 2, &info, &length), POS_OK);
    ASSERT_EQ(length, 4);
    EXPECT_EQ(std::memcmp(info, "\x07\0\0\0", 4), 0);
    EXPECT_EQ(posDeleteDLLHeapData(info), POS_OK);
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(POSAccessUserInteractionTest, GetInfo_WithoutAPlaceForTheLength_WritesNullAsTheInformation) {
    result_ = reinterpret_cast<uint8_t*>(this);
    EXPECT_EQ(posGetInfo(0, "\x60\x01", 2, &result_, nullptr), POS_FAILURE);
    EXPECT_EQ(result_, nullptr);

    infoLength_ = 77;
    EXPECT_EQ(posGetInfo(0, "\x60\x01", 2, nullptr, &infoLength_), POS_FAILURE);
    EXPECT_EQ(infoLength_, 0);
}

TEST_F(POSAccessUserInteractionTest, GetInfo_EmptyAnswer_IsNullAndZero) {
    forwarder_->answer(posCommand::kGetInformation, test::information(""));
    EXPECT_EQ(getInfo(5), POS_OK);
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(infoLength_, 0);
}

TEST_F(POSAccessUserInteractionTest, CallMethod_NullMethodName_FailsWithTheNullPointerText) {
    const uint32_t applicationId = registered("Editor");
    forwarder_->forgetCalls();
    fillOutputs();
    EXPECT_EQ(posCallMethod(applicationId, &identifier_, nullptr, nullptr, 0, &result_, &resultLength_),
              POS_FAILURE);
    EXPECT_EQ(dialog_->shown, oneReport("Editor", kNullPointer, "Stopped."));
    EXPECT_EQ(result_, nullptr);
    EXPECT_EQ(resultLength_, 0u);
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(POSAccessUserInteractionTest, EveryRequiredPointer_WhenNull_FailsWithTheNullPointerText) {
    const uint32_t app = registered("Editor");
    forwarder_->forgetCalls();
    uint8_t byte = 0;
    uint32_t applicationId = 0;
    const std::function<uint32_t()> calls[] = {
        [&] { return posRegisterApplicationWithClasses("Editor", &identifier_, 1, nullptr, 0, nullptr); },
        [&] { return posRegisterApplicationWithClasses("Editor", nullptr, 1, nullptr, 0, &applicationId); },
        [&] { return posInstantiateObject(app, nullptr, &object_); },
        [&] { return posInstantiateObject(app, &null_, &object_); },
        [&] { return posInstantiateObject(app, &identifier_, nullptr); },
        [&] { return posInstantiateObjectOnExecuter(app, &identifier_, nullptr, &object_); },
        [&] { return posCallMethod(app, nullptr, "m", &byte, 1, &result_, &resultLength_); },
        [&] { return posCallMethod(app, &null_, "m", &byte, 1, &result_, &resultLength_); },
        [&] { return posCallMethod(app, &identifier_, "m", nullptr, 1, &result_, &resultLength_); },
        [&] { return posCallMethod(app, &identifier_, "m", &byte, 1, nullptr, &resultLength_); },
        [&] { return posCallMethod(app, &identifier_, "m", &byte, 1, &result_, nullptr); },
        [&] { return posDeleteObject(app, nullptr); },
        [&] { return posDeleteObject(app, &null_); },
        [&] { return posGetInfo(app, nullptr, 0, &result_, &infoLength_); },
        [&] { return posGetInfo(app, &byte, 1, nullptr, &infoLength_); },
        [&] { return posGetInfo(app, &byte, 1, &result_, nullptr); },
        [&] { return posExecuteCMD(app, nullptr, 0, &identifier_, 1, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &null_, 1, &identifier_, 1, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, nullptr, 0, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, &null_, 1, &result_, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, &identifier_, 1, nullptr, &resultLength_); },
        [&] { return posExecuteCMD(app, &identifier_, 1, &identifier_, 1, &result_, nullptr); },
    };
    size_t index = 0;
    for (const auto& failing : calls) {
        dialog_->shown.clear();
        EXPECT_EQ(failing(), POS_FAILURE) << index;
        EXPECT_EQ(dialog_->shown, oneReport("Editor", kNullPointer, "Stopped.")) << index;
        ++index;
    }
    EXPECT_TRUE(forwarder_->calls().empty());
}

TEST_F(POSAccessUserInteractionTest, InstantiateOnExecuter_WithAnyExecuter_BehavesAsWithout) {
    const uint32_t applicationId = registered();
    Identifier name("executer");
    void* executer = name.bytes();
    EXPECT_EQ(instantiate(applicationId), POS_OK);
    posFreeDllHeapData(object_);
    for (void** handle : {&executer, &null_, static_cast<void**>(nullptr)}) {
        void* object = nullptr;
        EXPECT_EQ(posInstantiateObjectOnExecuter(applicationId, handle, &identifier_, &object), POS_OK);
        EXPECT_EQ(std::memcmp(object, "object\0\0\0\0\0\0\0\0\0\0", 16), 0);
        posFreeDllHeapData(object);
    }
    const auto requests = forwarder_->requests(posCommand::kInstantiateObject);
    ASSERT_EQ(requests.size(), 4u);
    for (const auto& request : requests)
        EXPECT_EQ(request->bytes().compare(requests[0]->bytes()), 0);
}

TEST_F(POSAccessUserInteractionTest, CallMethodOnExecuter_WithNull_IsCallMethod) {
    const uint32_t applicationId = registered();
    EXPECT_EQ(call(applicationId), POS_OK);
    posDeleteDLLHeapData(result_);
    EXPECT_EQ(posCallMethodOnExecuter(applicationId, nullptr, &identifier_, "add", nullptr, 0, &result_,
                                      &resultLength_),
              POS_OK);
    posDeleteDLLHeapData(result_);
    const auto requests = forwarder_->requests(posCommand::kCallMethod);
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[0]->bytes().compare(requests[1]->bytes()), 0);
}

}  // namespace
}  // namespace dovrel
