// Compares docs/development-server.md with the server: its tables are complete and correct, and its examples
// work.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "server/BehaviourReader.h"
#include "server/ControlCalls.h"
#include "server/Exchanges.h"
#include "settings/Properties.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/RecordedHost.h"
#include "tests/server/Requests.h"
#include "tests/support/DocumentPage.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {
namespace {

namespace posField = dovrel::posField;
using dovrel::test::DocumentPage;
using Names = std::vector<std::string>;

std::string readWholeFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class DevelopmentServerPage : public testing::Test {
  protected:
    // Returns the first cells of the rows under a header.
    Names firstCells(const DocumentPage::Row& header) const {
        Names cells;
        for (const DocumentPage::Row& row : page_.rowsUnder(header))
            cells.push_back(row[0]);
        return cells;
    }

    static constexpr char kSettingsPath[] = "/Library/Application Support/Tessilor/pos/Merrowd.conf";
    static constexpr size_t kTimeLength = sizeof "2026-11-15 18:19:00.123 " - 1;

    std::string control(const std::string& settings) {
        return bytesToText(control_.handle(settings).parameter->bytes());
    }

    // Applies an example; it must not cause a problem.
    void apply(const std::string& settings) {
        const std::string reply = control(settings);
        EXPECT_NE(reply.find("//problems\nINT:0\n"), std::string::npos) << reply;
    }

    uint32_t registerApplication(const std::string& name) {
        return send(registerRequest(name)).number(posField::kSession);
    }
    std::string instantiate(uint32_t session, const std::string& className) {
        return send(instantiateRequest(session, className)).data(posField::kObject);
    }
    std::string result(uint32_t session, const std::string& object, const std::string& method,
                       const std::string& argument = "") {
        return send(callRequest(session, object, method, argument)).data(posField::kResult);
    }

    Reply send(const Request& request) {
        return Reply(exchanges_.handleData(request.bytes(), 0).parameter->bytes());
    }

    const DocumentPage page_{DEVELOPMENT_SERVER_PAGE};
    const dovrel::test::TemporaryFolder folder_;
    FakeProcess process_;
    ServerState state_{TestServer::kFirstSession};
    ExchangeLog log_{folder_.path("Merrowd.log")};
    Exchanges exchanges_{state_, process_, log_};
    ControlCalls control_{state_, process_, log_};
};

TEST_F(DevelopmentServerPage, TheTableOfClasses_ListsEveryMethodOfEveryBuiltInClass) {
    std::set<DocumentPage::Row> expected;
    for (const ServerClass* builtIn : ClassRegistry::builtInClasses()) {
        if (builtIn->name() == "Greeter") continue;  // the example on the page, which only this test contains
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

TEST_F(DevelopmentServerPage, TheTableOfCommands_ListsCommandsThatTheServerKnows) {
    const Names commands = firstCells({"command", "argument"});
    EXPECT_EQ(commands, (Names{"ping", "version", "classes", "objects"}));
    const uint32_t session = registerApplication("Demo");
    for (const std::string& command : commands) {
        EXPECT_FALSE(send(commandRequest(session, command)).isException()) << command;
    }
}

TEST_F(DevelopmentServerPage, TheTableOfInformation_ListsEveryRequestThatIsAnswered) {
    std::set<std::string> answered;
    for (uint32_t number = 0; number < 0x1000; ++number) {
        const std::string request = littleEndian(number).substr(0, 2);
        if (!send(informationRequest(1, request)).isException()) answered.insert(std::to_string(number));
    }
    const Names onPage = firstCells({"request", "result"});
    EXPECT_EQ(std::set<std::string>(onPage.begin(), onPage.end()), answered);
}

TEST_F(DevelopmentServerPage, TheTablesOfSettingsAndMisbehaviours_AreComplete) {
    EXPECT_EQ(firstCells({"setting", "value", "meaning"}), settingNames());
    EXPECT_EQ(firstCells({"misbehave", "what happens"}), faultNames());
}

TEST_F(DevelopmentServerPage, TheTableOfWordsOfClassesWithoutCode_IsComplete) {
    EXPECT_EQ(firstCells({"word", "value", "meaning"}), BehaviourReader::words());
}

TEST_F(DevelopmentServerPage, TheTableOfTheControlReply_HasEveryKey) {
    const dovrel::test::TemporaryFolder folder;
    RecordedHost(folder.path("recording")).registerApplication();
    control_.addStartProblem("a problem");
    std::string text = control("//replay\nSTR:" + folder.path("recording") + "\n");
    dovrel::Properties reply;
    reply.load(text, true);
    reply.remove("startProblem 1");
    std::set<std::string> keys;
    for (int32_t i = 0; i < static_cast<int32_t>(reply.size()); ++i)
        keys.insert(reply.getKeyAt(i));
    const Names onPage = firstCells({"key", "value"});
    EXPECT_EQ(std::set<std::string>(onPage.begin(), onPage.end()), keys);
}

TEST_F(DevelopmentServerPage, TheScanner_DoesWhatItIsDescribedToDo) {
    apply(page_.settingsBlocks().at(0));
    const uint32_t session = registerApplication("Demo");
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

TEST_F(DevelopmentServerPage, ThePrinter_ChoosesByArgumentAndPerformsItsSteps) {
    apply(page_.settingsBlocks().at(1));
    const uint32_t session = registerApplication("Demo");
    const std::string printer = instantiate(session, "Printer");
    EXPECT_EQ(result(session, printer, "print", "letter.txt"), "1 page");
    const Reply photo = send(callRequest(session, printer, "print", "holiday.jpeg"));
    EXPECT_EQ(photo.code(), 28u);
    EXPECT_EQ(photo.text(), "There is no ink.");
    EXPECT_EQ(process_.calls, Names());
    EXPECT_EQ(result(session, printer, "print", "draft of the letter"), "1 page, grey");
    EXPECT_EQ(process_.calls, (Names{"pause 100"}));
    EXPECT_EQ(result(session, printer, "print", "music.ogg"), "nothing printed");
    EXPECT_EQ(result(session, printer, "status"), "starting");
    EXPECT_EQ(send(callRequest(session, printer, "status")).data(posField::kServerMessage),
              littleEndian(1) + "The printer is warming up.");
    EXPECT_EQ(result(session, printer, "status"), "ready");
    EXPECT_EQ(result(session, printer, "status"), "ready");
}

TEST_F(DevelopmentServerPage, TheCopier_HasACounterAndAStoreForAllItsObjects) {
    apply(page_.settingsBlocks().at(2));
    const uint32_t session = registerApplication("Demo");
    const uint32_t otherSession = registerApplication("Other");
    const std::string copier = instantiate(session, "Copier");
    const std::string other = instantiate(otherSession, "Copier");
    EXPECT_EQ(result(session, copier, "copy", "a.txt"), "copy 1 of a.txt for Demo");
    EXPECT_EQ(result(otherSession, other, "copy", "b.txt"), "copy 2 of b.txt for Other");
    EXPECT_EQ(send(callRequest(session, copier, "copy", "c.txt")).text(), "The tray is empty.");
    EXPECT_EQ(result(session, copier, "load"), littleEndian(0));
    EXPECT_EQ(result(session, copier, "copy", "c.txt"), "copy 1 of c.txt for Demo");
    EXPECT_EQ(result(session, copier, "save", std::string("a.txt\0text", 10)), "");
    EXPECT_EQ(result(otherSession, other, "open", "a.txt"), "text");
    EXPECT_EQ(result(otherSession, other, "names"), "a.txt\n");
    EXPECT_EQ(send(callRequest(session, copier, "open", "b.txt")).code(), 28u);
}

TEST_F(DevelopmentServerPage, TheClassInCode_IsTheOneThatThisTestContains) {
    const std::string example = readWholeFile(GREETER_EXAMPLE);
    const std::string code = "```cpp\n" + example.substr(example.find('\n') + 1) + "```\n";
    EXPECT_NE(readWholeFile(DEVELOPMENT_SERVER_PAGE).find(code), std::string::npos);
}

TEST_F(DevelopmentServerPage, TheClassInCode_SeesItsApplicationAndSendsMessages) {
    const uint32_t session =
        Reply(exchanges_.handleData(registerRequest("Demo").bytes(), 4711).parameter->bytes())
            .number(posField::kSession);
    const Reply made = send(instantiateRequest(session, "Greeter"));
    EXPECT_EQ(made.data(posField::kServerMessage), littleEndian(1) + "Process 4711 has a greeter.");
    const std::string greeter = made.data(posField::kObject);
    const Reply greeted = send(callRequest(session, greeter, "greet", "Ada"));
    EXPECT_EQ(greeted.data(posField::kResult), "Hello, Ada!");
    EXPECT_EQ(greeted.data(posField::kServerMessage), littleEndian(1) + "Demo has greeted Ada.");
    EXPECT_EQ(send(callRequest(session, greeter, "greet")).code(), 30u);
    EXPECT_EQ(result(session, greeter, "echo", "x"), "x");
}

TEST_F(DevelopmentServerPage, TheFirstSettings_TurnTheLogOnAndEndWithTheLastClient) {
    apply(page_.settingsBlocks().at(3));
    EXPECT_TRUE(state_.settings.log);
    EXPECT_TRUE(state_.settings.endWithLastClient);
}

TEST_F(DevelopmentServerPage, TheSecondSettings_RefuseTheSecondRegistrationAndNoOther) {
    ASSERT_EQ(page_.settingsBlocks().size(), 5u);
    apply(page_.settingsBlocks().at(4));
    EXPECT_FALSE(send(registerRequest("One")).isException());
    const Reply second = send(registerRequest("Two"));
    EXPECT_EQ(second.code(), 32u);
    EXPECT_EQ(second.text(), "There is no room for another application.");
    EXPECT_FALSE(send(registerRequest("Three")).isException());
}

// Compares without times, numbers of exchanges and processes.
TEST_F(DevelopmentServerPage, TheLog_LooksAsThePageShowsIt) {
    control_.applyAtStart("//log\nINT:1\nlog=1\n", kSettingsPath);
    const uint32_t session = registerApplication("Demo");
    const std::string echo = instantiate(session, "Echo");
    exchanges_.handleData(callRequest(session, echo, "echo", "hello").bytes(), 4711);
    const std::string log = folder_.read("Merrowd.log");
    size_t compared = 0;
    std::istringstream page(readWholeFile(DEVELOPMENT_SERVER_PAGE));
    for (std::string line; std::getline(page, line);) {
        const size_t text = std::min(line.find_first_not_of(' '), line.size());
        const bool isField = line.compare(text, 2, "> ") == 0 || line.compare(text, 2, "< ") == 0;
        const bool isEntry = text == 4 && line.compare(text, 2, "20") == 0;
        if (!isField && !isEntry) continue;
        const size_t number = line.find(" #");
        size_t start = isField ? text : text + kTimeLength;
        if (number != std::string::npos) start = line.find(' ', number + 1);
        EXPECT_NE(log.find(line.substr(start) + "\n"), std::string::npos) << line;
        ++compared;
    }
    EXPECT_EQ(compared, 10u);
}

}  // namespace
}  // namespace merrowd::test
