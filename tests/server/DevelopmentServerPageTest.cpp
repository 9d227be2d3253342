// Compares docs/development-server.md with the server: its tables are complete and correct, and its examples
// work.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "server/BehaviourReader.h"
#include "settings/Properties.h"
#include "tests/server/ExchangesFixture.h"
#include "tests/server/RecordedHost.h"
#include "tests/support/DocumentPage.h"

namespace merrowd::test {
namespace {

using dovrel::test::DocumentPage;
using Names = std::vector<std::string>;

std::string readWholeFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class DevelopmentServerPage : public ExchangesFixture {
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

    std::string control(const std::string& settings) { return readBytes(control_.handle(settings)); }

    // Applies an example; it must not cause a problem.
    void applyExample(const std::string& settings) {
        const std::string reply = control(settings);
        EXPECT_NE(reply.find("//problems\nINT:0\n"), std::string::npos) << reply;
    }

    uint32_t registerApplication(const std::string& name) {
        return ask(registerRequest(name)).number(posField::kSession);
    }
    std::string instantiate(uint32_t session, const std::string& className) {
        return ask(instantiateRequest(session, className)).data(posField::kObject);
    }
    std::string result(uint32_t session, const std::string& object, const std::string& method,
                       const std::string& argument = "") {
        return ask(callRequest(session, object, method, argument)).data(posField::kResult);
    }

    Reply ask(const Request& request) { return readReply(send(request)); }

    const DocumentPage page_{DEVELOPMENT_SERVER_PAGE};
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
        EXPECT_FALSE(ask(commandRequest(session, command)).isException()) << command;
    }
}

TEST_F(DevelopmentServerPage, TheTableOfInformation_ListsEveryRequestThatIsAnswered) {
    std::set<std::string> answered;
    for (uint32_t number = 0; number < 0x1000; ++number) {
        const std::string request = littleEndian(number).substr(0, 2);
        if (!ask(informationRequest(1, request)).isException()) answered.insert(std::to_string(number));
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
    RecordedHost(folder_.path("recording")).registerApplication();
    control_.addStartProblem("a problem");
    std::string text = control("//replay\nSTR:" + folder_.path("recording") + "\n");
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
    applyExample(page_.settingsBlocks().at(0));
    const uint32_t session = registerApplication("Demo");
    Request instantiate(dovrel::posCommand::kInstantiateObject);
    instantiate.number(posField::kSession, session);
    instantiate.data(posField::kClass, std::string("\0\1\2\3\4\5\6\7\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F", 16));
    instantiate.data(posField::kCreationData, "").number(posField::kExecuterWord, dovrel::kNoExecuter);
    const Reply made = ask(instantiate);
    EXPECT_EQ(made.data(posField::kServerMessage), littleEndian(1) + "The scanner is warming up.");
    const std::string object = made.data(posField::kObject);
    const Reply scanned = ask(callRequest(session, object, "scan"));
    EXPECT_EQ(scanned.data(posField::kResult), "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(scanned.data(posField::kServerMessage), littleEndian(1) + "The lamp is getting old.");
    EXPECT_EQ(process_.calls, (Names{"pause 250"}));
    const Reply ejected = ask(callRequest(session, object, "eject"));
    EXPECT_EQ(ejected.code(), 28u);
    EXPECT_EQ(ejected.text(), "The paper is stuck.\nOpen the lid.");
}

TEST_F(DevelopmentServerPage, ThePrinter_ChoosesByArgumentAndPerformsItsSteps) {
    applyExample(page_.settingsBlocks().at(1));
    const uint32_t session = registerApplication("Demo");
    const std::string printer = instantiate(session, "Printer");
    EXPECT_EQ(result(session, printer, "print", "letter.txt"), "1 page");
    const Reply photo = ask(callRequest(session, printer, "print", "holiday.jpeg"));
    EXPECT_EQ(photo.code(), 28u);
    EXPECT_EQ(photo.text(), "There is no ink.");
    EXPECT_EQ(process_.calls, Names());
    EXPECT_EQ(result(session, printer, "print", "draft of the letter"), "1 page, grey");
    EXPECT_EQ(process_.calls, (Names{"pause 100"}));
    EXPECT_EQ(result(session, printer, "print", "music.ogg"), "nothing printed");
    EXPECT_EQ(result(session, printer, "status"), "starting");
    EXPECT_EQ(ask(callRequest(session, printer, "status")).data(posField::kServerMessage),
              littleEndian(1) + "The printer is warming up.");
    EXPECT_EQ(result(session, printer, "status"), "ready");
    EXPECT_EQ(result(session, printer, "status"), "ready");
}

TEST_F(DevelopmentServerPage, TheCopier_HasACounterAndAStoreForAllItsObjects) {
    applyExample(page_.settingsBlocks().at(2));
    const uint32_t session = registerApplication("Demo");
    const uint32_t otherSession = registerApplication("Other");
    const std::string copier = instantiate(session, "Copier");
    const std::string other = instantiate(otherSession, "Copier");
    EXPECT_EQ(result(session, copier, "copy", "a.txt"), "copy 1 of a.txt for Demo");
    EXPECT_EQ(result(otherSession, other, "copy", "b.txt"), "copy 2 of b.txt for Other");
    EXPECT_EQ(ask(callRequest(session, copier, "copy", "c.txt")).text(), "The tray is empty.");
    EXPECT_EQ(result(session, copier, "load"), littleEndian(0));
    EXPECT_EQ(result(session, copier, "copy", "c.txt"), "copy 1 of c.txt for Demo");
    EXPECT_EQ(result(session, copier, "save", std::string("a.txt\0text", 10)), "");
    EXPECT_EQ(result(otherSession, other, "open", "a.txt"), "text");
    EXPECT_EQ(result(otherSession, other, "names"), "a.txt\n");
    EXPECT_EQ(ask(callRequest(session, copier, "open", "b.txt")).code(), 28u);
}

TEST_F(DevelopmentServerPage, TheClassInCode_IsTheOneThatThisTestContains) {
    const std::string example = readWholeFile(GREETER_EXAMPLE);
    const std::string code = "```cpp\n" + example.substr(example.find('\n') + 1) + "```\n";
    EXPECT_NE(readWholeFile(DEVELOPMENT_SERVER_PAGE).find(code), std::string::npos);
}

TEST_F(DevelopmentServerPage, TheClassInCode_SeesItsApplicationAndSendsMessages) {
    const uint32_t session = readReply(send(registerRequest("Demo"), 4711)).number(posField::kSession);
    const Reply made = ask(instantiateRequest(session, "Greeter"));
    EXPECT_EQ(made.data(posField::kServerMessage), littleEndian(1) + "Process 4711 has a greeter.");
    const std::string greeter = made.data(posField::kObject);
    const Reply greeted = ask(callRequest(session, greeter, "greet", "Ada"));
    EXPECT_EQ(greeted.data(posField::kResult), "Hello, Ada!");
    EXPECT_EQ(greeted.data(posField::kServerMessage), littleEndian(1) + "Demo has greeted Ada.");
    EXPECT_EQ(ask(callRequest(session, greeter, "greet")).code(), 30u);
    EXPECT_EQ(result(session, greeter, "echo", "x"), "x");
}

TEST_F(DevelopmentServerPage, TheFirstSettings_TurnTheLogOnAndEndWithTheLastClient) {
    applyExample(page_.settingsBlocks().at(3));
    EXPECT_TRUE(state_.settings.log);
    EXPECT_TRUE(state_.settings.endWithLastClient);
}

TEST_F(DevelopmentServerPage, TheSecondSettings_RefuseTheSecondRegistrationAndNoOther) {
    ASSERT_EQ(page_.settingsBlocks().size(), 5u);
    applyExample(page_.settingsBlocks().at(4));
    EXPECT_FALSE(ask(registerRequest("One")).isException());
    const Reply second = ask(registerRequest("Two"));
    EXPECT_EQ(second.code(), 32u);
    EXPECT_EQ(second.text(), "There is no room for another application.");
    EXPECT_FALSE(ask(registerRequest("Three")).isException());
}

// Compares without times, numbers of exchanges and processes.
TEST_F(DevelopmentServerPage, TheLog_LooksAsThePageShowsIt) {
    control_.applyAtStart("//log\nINT:1\nlog=1\n", kSettingsPath);
    const uint32_t session = registerApplication("Demo");
    const std::string echo = instantiate(session, "Echo");
    send(callRequest(session, echo, "echo", "hello"), 4711);
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
