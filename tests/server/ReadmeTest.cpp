// Compares server/README.md with the server: its tables are complete and correct, and its examples work.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "server/Exchanges.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/Requests.h"
#include "tests/support/DocumentPage.h"

namespace merrowd::test {
namespace {

using dovrel::test::DocumentPage;
using Names = std::vector<std::string>;

class Readme : public testing::Test {
  protected:
    // Returns the first cells of the rows under a header.
    Names firstCells(const DocumentPage::Row& header) const {
        Names cells;
        for (const DocumentPage::Row& row : page_.rowsUnder(header))
            cells.push_back(row[0]);
        return cells;
    }

    // Applies an example; it must not cause a problem.
    void apply(const std::string& settings) {
        const std::string status = bytesToText(exchanges_.handleControl(settings).parameter->bytes());
        EXPECT_NE(status.find("//problems\nINT:0\n"), std::string::npos) << status;
    }

    Reply send(const Request& request) {
        return Reply(exchanges_.handleData(request.bytes(), 0).parameter->bytes());
    }

    const DocumentPage page_{SERVER_README};
    FakeProcess process_;
    ServerState state_{TestServer::kFirstSession};
    ExchangeLog log_{"/dev/null"};
    Exchanges exchanges_{state_, process_, log_};
};

TEST_F(Readme, TheTableOfClasses_ListsEveryMethodOfEveryBuiltInClass) {
    std::set<DocumentPage::Row> expected;
    for (const ServerClass* builtIn : ClassRegistry::builtInClasses()) {
        for (const std::string& method : builtIn->methods())
            expected.insert({builtIn->name(), method});
    }
    std::set<DocumentPage::Row> onPage;
    for (DocumentPage::Row row : page_.rowsUnder({"class", "method"})) {
        row.resize(2);
        onPage.insert(row);
    }
    EXPECT_EQ(onPage, expected);
}

TEST_F(Readme, TheTableOfCommands_ListsCommandsThatTheServerKnows) {
    const Names commands = firstCells({"command", "argument"});
    EXPECT_EQ(commands, (Names{"ping", "version", "classes", "objects"}));
    const uint32_t session = send(registerRequest("Demo")).number(dovrel::posField::kSession);
    for (const std::string& command : commands) {
        EXPECT_FALSE(send(commandRequest(session, command)).isException()) << command;
    }
}

TEST_F(Readme, TheTableOfInformation_ListsEveryRequestThatIsAnswered) {
    std::set<std::string> answered;
    for (uint32_t number = 0; number < 0x1000; ++number) {
        const std::string request = littleEndian(number).substr(0, 2);
        if (!send(informationRequest(1, request)).isException()) answered.insert(std::to_string(number));
    }
    const Names onPage = firstCells({"request", "result"});
    EXPECT_EQ(std::set<std::string>(onPage.begin(), onPage.end()), answered);
}

TEST_F(Readme, TheTablesOfSettingsAndMisbehaviours_AreComplete) {
    EXPECT_EQ(firstCells({"setting", "value", "meaning"}), settingNames());
    EXPECT_EQ(firstCells({"misbehave", "what happens"}), faultNames());
}

TEST_F(Readme, TheFirstExample_TurnsTheLogOnAndEndsWithTheLastClient) {
    apply(page_.settingsBlocks().at(0));
    EXPECT_TRUE(state_.settings.log);
    EXPECT_TRUE(state_.settings.endWithLastClient);
}

TEST_F(Readme, TheSecondExample_RefusesTheSecondRegistrationAndNoOther) {
    apply(page_.settingsBlocks().at(1));
    EXPECT_FALSE(send(registerRequest("One")).isException());
    const Reply second = send(registerRequest("Two"));
    EXPECT_EQ(second.code(), 32u);
    EXPECT_EQ(second.text(), "There is no room for another application.");
    EXPECT_FALSE(send(registerRequest("Three")).isException());
}

TEST_F(Readme, TheThirdExample_IsAClassThatDoesWhatItIsDescribedToDo) {
    namespace posField = dovrel::posField;
    ASSERT_EQ(page_.settingsBlocks().size(), 3u);
    apply(page_.settingsBlocks().at(2));
    const uint32_t session = send(registerRequest("Demo")).number(posField::kSession);
    Request instantiate(dovrel::posCommand::kInstantiateObject);
    instantiate.number(posField::kSession, session);
    instantiate.data(posField::kClass, std::string("\0\1\2\3\4\5\6\7\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F", 16));
    instantiate.data(posField::kCreationData, "").number(posField::kExecuterWord, dovrel::kNoExecuter);
    const Reply made = send(instantiate);
    EXPECT_EQ(made.data(posField::kServerMessage), littleEndian(1) + "The scanner is warming up.");
    const std::string object = made.data(posField::kObject);
    const Reply scanned = send(callRequest(session, object, "scan"));
    EXPECT_EQ(scanned.data(posField::kResult), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(scanned.data(posField::kServerMessage), littleEndian(1) + "The lamp is getting old.");
    EXPECT_EQ(process_.calls, (Names{"pause 250"}));
    const Reply ejected = send(callRequest(session, object, "eject"));
    EXPECT_EQ(ejected.code(), 28u);
    EXPECT_EQ(ejected.text(), "The paper is stuck.\nOpen the lid.");
}

}  // namespace
}  // namespace merrowd::test
