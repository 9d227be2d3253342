#include "InterProcessCommunication/POSCommands.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dovrel {
namespace {

using Numbers = std::vector<uint32_t>;

Numbers listNumbers(const POSFieldList& fields) {
    Numbers numbers;
    for (const POSField& field : fields)
        numbers.push_back(field);
    return numbers;
}

struct ExpectedCommand {
    const POSCommand& command;
    uint32_t code;
    const char* name;
    Numbers request;
    Numbers reply;
};

TEST(POSCommands, Table_HasEveryCommandWithItsFieldsInOrder) {
    const std::vector<ExpectedCommand> expected = {
        {posCommand::kRegisterApplication, 10, "register application", {100, 101, 130, 114}, {103, 115}},
        {posCommand::kUnregisterApplication, 11, "unregister application", {103}, {}},
        {posCommand::kInstantiateObject, 12, "instantiate object", {103, 106, 116, 117}, {105, 120}},
        {posCommand::kDeleteObject, 13, "delete object", {103, 105}, {}},
        {posCommand::kCallMethod, 14, "call method", {103, 105, 107, 110, 104}, {111, 120}},
        {posCommand::kExecuteCommand, 15, "execute command", {103, 104, 110, 112}, {111}},
        {posCommand::kGetInformation, 16, "get information", {103, 108}, {109}},
        {posCommand::kQueryInterfaceVersion, 17, "query interface version", {}, {118}},
    };
    ASSERT_EQ(kPOSCommands.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(expected[i].name);
        for (const POSCommand* command : {&expected[i].command, &kPOSCommands[i]}) {
            EXPECT_EQ(command->code, expected[i].code);
            EXPECT_STREQ(command->name, expected[i].name);
            EXPECT_EQ(listNumbers(command->request), expected[i].request);
            EXPECT_EQ(listNumbers(command->reply), expected[i].reply);
        }
    }
}

TEST(POSCommands, Forms_AreThoseOfTheWire) {
    using Form = POSFieldForm;
    for (const POSField& field : {posField::kApplicationName, posField::kMethodName})
        EXPECT_EQ(field.form, Form::kName) << field.name;
    for (const POSField& field : {posField::kObject, posField::kClass, posField::kCommandExecuter})
        EXPECT_EQ(field.form, Form::kIdentifier) << field.name;
    EXPECT_EQ(posField::kExecuter.form, Form::kOptionalIdentifier);
    for (const POSField& field : {posField::kTransferKind, posField::kMessageKind, posField::kCommand,
                                  posField::kSession, posField::kCommandLength, posField::kExecuterWord,
                                  posField::kInterfaceVersion, posField::kExceptionCode})
        EXPECT_EQ(field.form, Form::kUInt32) << field.name;
    EXPECT_EQ(posField::kExceptionText.form, Form::kText);
    for (const POSField& field :
         {posField::kClientProcess, posField::kClassList, posField::kOptions, posField::kRegistrationFlags,
          posField::kCreationData, posField::kServerMessage, posField::kArgument, posField::kCommandData,
          posField::kResult, posField::kInformationRequest, posField::kInformation})
        EXPECT_EQ(field.form, Form::kData) << field.name;
}

TEST(POSCommands, HeaderAndExceptionFields_HaveTheirNumbers) {
    EXPECT_EQ(posField::kTransferKind, 0u);
    EXPECT_EQ(posField::kMessageKind, 1u);
    EXPECT_EQ(posField::kReserved, 2u);
    EXPECT_EQ(posField::kCommand, 3u);
    EXPECT_EQ(posField::kExceptionText, 150u);
    EXPECT_EQ(posField::kExceptionCode, 151u);
}

TEST(POSCommands, FixedValues_AreThoseOfTheWire) {
    EXPECT_EQ(kTransferObjFormatVersion, 9u);
    EXPECT_EQ(kPOSInterfaceVersion, 7u);
    EXPECT_EQ(kPOSIdentifierSize, 16u);
    EXPECT_EQ(kNoExecuter, 0xFFFFFFFFu);
    EXPECT_EQ(kTransferKindStandard, 1u);
    EXPECT_EQ(kMessageKindRequest, 10u);
    EXPECT_EQ(kMessageKindException, 20u);
    EXPECT_EQ(kErrorCodeGeneral, 0u);
    EXPECT_EQ(kErrorCodeNoValidInterface, 3u);
}

TEST(POSCommands, Find_GivesTheRowOfACodeAndNullForAnyOther) {
    for (uint32_t code = 10; code <= 17; ++code) {
        ASSERT_NE(findPOSCommand(code), nullptr) << code;
        EXPECT_EQ(findPOSCommand(code)->code, code);
    }
    for (const uint32_t code : {0u, 9u, 18u, 0xFFFFFFFFu})
        EXPECT_EQ(findPOSCommand(code), nullptr) << code;
}

}  // namespace
}  // namespace dovrel
