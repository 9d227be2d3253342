// Malformed requests. Whatever arrives, the server replies with an exception of
// the right code and keeps working.
#include <gtest/gtest.h>

#include <functional>

#include "server/RequestHandler.h"
#include "tests/server/Requests.h"

namespace merrowd::test {
namespace {

namespace posField = dovrel::posField;

constexpr uint32_t kNoValidInterface = 3;
constexpr uint32_t kParameterFormat = 30;
constexpr uint32_t kApplicationNotRegistered = 34;

CPPByteArray prefix(const CPPByteArray& bytes, uint32_t length) {
    CPPByteArray result;
    result.setFromPart(bytes, 0, length);
    return result;
}

// Expects that the server still works.
void expectAlive(TestServer& server) {
    const uint32_t session = server.registerApplication();
    EXPECT_EQ(server.send(commandRequest(session, "ping", "alive")).data(posField::kResult), "alive");
    EXPECT_FALSE(server.send(unregisterRequest(session)).isException());
}

TEST(MalformedRequest, OfNoBytes_IsParameterFormat) {
    TestServer server;
    EXPECT_EQ(server.send(CPPByteArray()).code(), kParameterFormat);
    expectAlive(server);
}

TEST(MalformedRequest, EveryPrefixOfEveryRequest_IsParameterFormat) {
    for (const Request& request : oneOfEachRequest()) {
        TestServer server;
        for (uint32_t length = 0; length < request.bytes().getSize(); ++length) {
            const Reply reply = server.send(prefix(request.bytes(), length));
            ASSERT_EQ(reply.code(), kParameterFormat) << "after " << length << " bytes";
            ASSERT_NE(reply.text(), "");
        }
        EXPECT_EQ(server.state().applications.size(), 0u);
        expectAlive(server);
    }
}

TEST(MalformedRequest, EveryRequestWithOneByteFlipped_IsAnsweredAndTheServerGoesOn) {
    TestServer server;
    for (const Request& request : oneOfEachRequest()) {
        for (uint32_t at = 0; at < request.bytes().getSize(); ++at) {
            CPPByteArray damaged(request.bytes());
            damaged.setByte(at, static_cast<uint8_t>(damaged.getByte(at) ^ 0xFF));
            const uint32_t kind = server.send(damaged).messageKind();
            ASSERT_TRUE(kind == 11 || kind == 20) << "byte " << at;
        }
    }
    expectAlive(server);
}

TEST(MalformedRequest, BytesAfterTheLastPart_AreParameterFormat) {
    TestServer server;
    CPPByteArray longer(versionRequest().bytes());
    longer.resize(longer.getSize() + 1, 0);
    EXPECT_EQ(server.send(longer).code(), kParameterFormat);
}

TEST(MalformedRequest, TextInsteadOfABlock_IsParameterFormat) {
    TestServer server;
    EXPECT_EQ(server.send(toBytes("GET / HTTP/1.1\r\n\r\n")).code(), kParameterFormat);
}

TEST(MalformedRequest, AnotherFormatVersion_IsNoValidInterface) {
    TestServer server;
    for (const uint8_t version : std::initializer_list<uint8_t>{0, 1, 7, 8, 10, 255}) {
        CPPByteArray bytes(versionRequest().bytes());
        bytes.setByte(9, version);
        EXPECT_EQ(server.send(bytes).code(), kNoValidInterface) << int{version};
    }
}

TEST(MalformedRequest, ABlockWithoutATypeNumber_IsNoValidInterface) {
    TestServer server;
    EXPECT_EQ(server.send(toBytes(std::string("AsAk\0\0", 6))).code(), kNoValidInterface);
}

TEST(MalformedRequest, AnUnknownCommand_IsNoValidInterfaceAndNamesIt) {
    TestServer server;
    for (const uint32_t command : {0u, 1u, 9u, 18u, 255u, 0xFFFFFFFFu}) {
        const Reply reply = server.send(Request(command));
        EXPECT_EQ(reply.code(), kNoValidInterface) << command;
        EXPECT_EQ(reply.text(), "there is no command " + std::to_string(command));
    }
}

TEST(MalformedRequest, AnotherTransferOrMessageKind_IsParameterFormat) {
    for (const uint32_t kind : {0u, 2u, 11u, 20u}) {
        POSTransferObj wrongTransferKind(kind, dovrel::kMessageKindRequest, 17);
        POSTransferObj wrongMessageKind(dovrel::kTransferKindStandard, kind, 17);
        TestServer server;
        EXPECT_EQ(server.send(wrongTransferKind.bytes()).code(), kParameterFormat) << kind;
        EXPECT_EQ(server.send(wrongMessageKind.bytes()).code(), kParameterFormat) << kind;
    }
}

// A change that a host could make to a field of a valid request.
using Change = std::function<void(POSTransferObj& changed, const POSField& field, const std::string& data)>;

// Returns the request with one of its fields, or a field of its header, changed.
CPPByteArray withChangedField(const CPPByteArray& bytes, uint32_t number, const Change& change) {
    POSTransferObj original;
    original.copyBytesFrom(bytes);
    const POSCommand& command = *dovrel::findPOSCommand(original.getCommand());
    POSTransferObj changed;
    const auto copy = [&](const POSField& field) {
        const std::string data = original.readString(field);
        if (field.number == number) return change(changed, field, data);
        changed.writeBytes(field, data.data(), static_cast<uint32_t>(data.size()));
    };
    for (const POSField& field : {posField::kTransferKind, posField::kMessageKind, posField::kCommand})
        copy(field);
    for (const POSField& field : command.request)
        copy(field);
    return changed.bytes();
}

std::vector<uint32_t> readFields(const CPPByteArray& bytes) {
    POSTransferObj object;
    object.copyBytesFrom(bytes);
    std::vector<uint32_t> fields{posField::kTransferKind, posField::kMessageKind, posField::kCommand};
    for (const POSField& field : dovrel::findPOSCommand(object.getCommand())->request)
        fields.push_back(field);
    return fields;
}

TEST(MalformedRequest, EveryFieldLeftOut_IsParameterFormatAndNamesTheField) {
    TestServer server;
    for (const Request& request : oneOfEachRequest()) {
        for (const uint32_t field : readFields(request.bytes())) {
            const Reply reply = server.send(withChangedField(
                request.bytes(), field, [](POSTransferObj&, const POSField&, const std::string&) {}));
            EXPECT_EQ(reply.code(), kParameterFormat) << field;
            EXPECT_EQ(reply.text().find("field " + std::to_string(field) + " ("), 0u) << reply.text();
        }
    }
    expectAlive(server);
}

TEST(MalformedRequest, EveryFieldOfAFixedForm_OneByteLongerOrShorter_IsParameterFormat) {
    TestServer server;
    const auto shorter = [](POSTransferObj& changed, const POSField& field, const std::string& data) {
        changed.writeString(field, data.substr(0, data.size() - 1));
    };
    const auto longer = [](POSTransferObj& changed, const POSField& field, const std::string& data) {
        changed.writeString(field, data + 'x');
    };
    for (const Request& request : oneOfEachRequest()) {
        POSTransferObj object;
        object.copyBytesFrom(request.bytes());
        for (const POSField& field : dovrel::findPOSCommand(object.getCommand())->request) {
            if (field.form == dovrel::POSFieldForm::kData) continue;
            const bool canShrink = !object.readString(field).empty();
            if (canShrink) {
                EXPECT_EQ(server.send(withChangedField(request.bytes(), field, shorter)).code(),
                          kParameterFormat)
                    << field.name;
            }
            EXPECT_EQ(server.send(withChangedField(request.bytes(), field, longer)).code(), kParameterFormat)
                << field.name;
        }
    }
    expectAlive(server);
}

TEST(MalformedRequest, ANameWithAZeroByteInside_IsParameterFormat) {
    TestServer server;
    Request request(dovrel::posCommand::kRegisterApplication);
    request.data(posField::kApplicationName, std::string("De\0mo\0", 6)).data(posField::kClientProcess, "");
    request.data(posField::kClassList, arrayList({})).data(posField::kOptions, "");
    EXPECT_EQ(server.send(request).code(), kParameterFormat);
}

TEST(MalformedRequest, InvalidClassLists_AreParameterFormatAndRegisterNothing) {
    TestServer server;
    const std::string twoAnnounced = arrayList({padded("Echo"), padded("Counter")});
    const std::string lists[] = {"",
                                 "no list",
                                 std::string("AsAk\0\1\0\0\0\x08", 10),
                                 twoAnnounced.substr(0, twoAnnounced.size() - 1),
                                 twoAnnounced.substr(0, twoAnnounced.size() - 24),
                                 arrayList({"Echo"}),
                                 arrayList({padded("Echo"), ""})};
    for (const std::string& list : lists) {
        Request request(dovrel::posCommand::kRegisterApplication);
        request.data(posField::kApplicationName, std::string("Demo\0", 5)).data(posField::kClientProcess, "");
        request.data(posField::kClassList, list).data(posField::kOptions, "");
        EXPECT_EQ(server.send(request).code(), kParameterFormat) << list;
    }
    EXPECT_EQ(server.state().applications.size(), 0u);
}

TEST(MalformedRequest, AClassListThatAnnouncesFourThousandMillionElements_IsParameterFormat) {
    TestServer server;
    std::string list = arrayList({padded("Echo")});
    list.replace(18, 4, "\xFF\xFF\xFF\xFF");
    Request request(dovrel::posCommand::kRegisterApplication);
    request.data(posField::kApplicationName, std::string("Demo\0", 5)).data(posField::kClientProcess, "");
    request.data(posField::kClassList, list).data(posField::kOptions, "");
    EXPECT_EQ(server.send(request).code(), kParameterFormat);
}

TEST(MalformedRequest, FieldsThatTheTableDoesNotList_AreIgnored) {
    TestServer server;
    EXPECT_EQ(server.send(versionRequest().data(999, "more")).number(posField::kInterfaceVersion), 7u);
}

TEST(MalformedRequest, UnknownIdentifiersInEveryCommand_AreApplicationNotRegistered) {
    TestServer server;
    const std::string object = server.instantiate(server.registerApplication(), "Echo");
    const uint32_t unknown = TestServer::kFirstSession + 1;
    for (const Request& request :
         {unregisterRequest(unknown), instantiateRequest(unknown, "Echo"), deleteRequest(unknown, object),
          callRequest(unknown, object, "echo"), commandRequest(unknown, "ping")}) {
        EXPECT_EQ(server.send(request).code(), kApplicationNotRegistered);
    }
}

}  // namespace
}  // namespace merrowd::test
