#include "portability/alerts/AlertMessages.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace portability {
namespace {

const std::string kRequest =
    R"({"body":"B","buttons":["Retry","Cancel"],"help":true,"host":4711,"title":"T","version":1})";

AlertRequest someRequest() {
    return {"T", "B", {"Retry", "Cancel"}, true, 4711};
}

std::string with(const std::string& old, const std::string& replacement) {
    std::string line = kRequest;
    const size_t at = line.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return line.replace(at, old.size(), replacement);
}

AlertRequest sentAndRead(const AlertRequest& request) {
    std::string line = AlertMessages::compose(request);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_LE(line.size(), kLongestAlertLine + 1);
    line.pop_back();
    const auto read = AlertMessages::parseRequest(line);
    EXPECT_TRUE(read.has_value());
    return read.value_or(AlertRequest{});
}

std::string repeated(const std::string& text, size_t times) {
    std::string all;
    for (size_t time = 0; time < times; ++time)
        all += text;
    return all;
}

bool endsWith(const std::string& text, const std::string& ending) {
    return text.size() >= ending.size() &&
           text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

// Requests from the host to the helper.

TEST(AlertMessages, ComposeRequest_IsOneJsonObjectOnOneLine) {
    EXPECT_EQ(AlertMessages::compose(someRequest()), kRequest + "\n");
}

TEST(AlertMessages, ParseRequest_ReadsWhatWasComposed) {
    const std::string text = "Größe “a\\b” \"c\"\n\n\t日本 \U0001F600 <b>&amp;</b> _x \x7f\x01";
    const AlertRequest read = sentAndRead({text + "1", text + "2", {text, "", "x"}, false, getpid()});
    EXPECT_EQ(read.title, text + "1");
    EXPECT_EQ(read.body, text + "2");
    EXPECT_EQ(read.buttons, (std::vector<std::string>{text, "", "x"}));
    EXPECT_FALSE(read.help);
    EXPECT_EQ(read.host, getpid());
    EXPECT_TRUE(sentAndRead(someRequest()).help);
}

TEST(AlertMessages, ParseRequest_TakesMembersInAnyOrderAndBlanksAndIgnoresUnknownMembers) {
    const auto read = AlertMessages::parseRequest(
        R"( { "host" : 1, "version" : 1, "later" : {"a" : [null]}, "help" : false,
              "buttons" : ["OK"], "body" : "", "title" : "\u00e4" } )");
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->title, "ä");
    EXPECT_EQ(read->body, "");
    EXPECT_EQ(read->host, 1);
}

TEST(AlertMessages, ComposeRequest_TextsOfTheLargestSizesAreSentWhole) {
    const std::string title(kLongestAlertTitle, '\x01');
    const std::string body(kLongestAlertBody, '\x02');
    const std::string caption(kLongestAlertCaption, '\x03');
    const AlertRequest read = sentAndRead({title, body, {caption, caption, caption}, true, 4711});
    EXPECT_EQ(read.title, title);
    EXPECT_EQ(read.body, body);
    EXPECT_EQ(read.buttons, (std::vector<std::string>{caption, caption, caption}));
}

TEST(AlertMessages, ComposeRequest_LongerTextsAreCutBetweenCharacters) {
    // A character has 1 to 4 bytes. The loop puts every offset within it at the cut.
    for (const std::string character : {"a", "ä", "€", "\U0001F600"}) {
        for (size_t offset = 0; offset < character.size(); ++offset) {
            const std::string longText =
                std::string(offset, '.') + repeated(character, kLongestAlertBody / character.size() + 1);
            const AlertRequest read = sentAndRead({longText, longText, {longText}, false, 4711});
            EXPECT_LE(read.body.size(), kLongestAlertBody);
            EXPECT_GT(read.body.size() + character.size(), kLongestAlertBody);
            EXPECT_LE(read.title.size(), kLongestAlertTitle);
            EXPECT_LE(read.buttons[0].size(), kLongestAlertCaption);
            for (const std::string& text : {read.title, read.body, read.buttons[0]}) {
                EXPECT_TRUE(endsWith(text, character + " …")) << character << offset;
                EXPECT_EQ(text.find("\uFFFD"), std::string::npos) << character << offset;
            }
        }
    }
}

TEST(AlertMessages, ComposeRequest_ReplacesBytesThatAreNotUtf8AndNulCharacters) {
    EXPECT_EQ(sentAndRead({"a\xff z", std::string("b\0c", 3), {"\xc3"}, false, 4711}).title, "a\uFFFD z");
    EXPECT_EQ(sentAndRead({"", std::string("b\0c", 3), {"\xc3"}, false, 4711}).body, "b\uFFFDc");
    EXPECT_EQ(sentAndRead({"", "", {"\xc3"}, false, 4711}).buttons[0], "\uFFFD");
}

TEST(AlertMessages, ComposeRequest_AMegabyteOfAnyBytesIsCutToWhatIsRead) {
    for (const char byte : {'\xff', '\x80', '\0', '\x01', '\\', '\n'}) {
        const std::string text(size_t{1} << 20, byte);
        sentAndRead({text, text, {text, text, text}, false, 4711});
    }
}

TEST(AlertMessages, ParseRequest_RefusesWhatIsNotAJsonObject) {
    for (const char* line : {"", " ", "null", "1", "\"version\"", "[]", "[1,2]", "{", "{}", "}", "{]",
                             "{\"version\":1", "nonsense", "\xef\xbb\xbf", "{\"version\":1}x"}) {
        EXPECT_FALSE(AlertMessages::parseRequest(line).has_value()) << line;
    }
    EXPECT_FALSE(AlertMessages::parseRequest(kRequest + kRequest).has_value());
    EXPECT_FALSE(AlertMessages::parseRequest(kRequest + '\0').has_value());
    EXPECT_FALSE(AlertMessages::parseRequest(kRequest + '\0' + "x").has_value());
    EXPECT_FALSE(AlertMessages::parseRequest("[" + kRequest + "]").has_value());
}

TEST(AlertMessages, ParseRequest_RefusesEveryBeginningOfARequest) {
    for (size_t length = 0; length < kRequest.size(); ++length)
        EXPECT_FALSE(AlertMessages::parseRequest(kRequest.substr(0, length)).has_value()) << length;
    EXPECT_TRUE(AlertMessages::parseRequest(kRequest).has_value());
}

TEST(AlertMessages, ParseRequest_RefusesARequestWithoutOneOfItsMembers) {
    for (const char* member : {"body", "buttons", "help", "host", "title", "version"})
        EXPECT_FALSE(AlertMessages::parseRequest(with(member, "x")).has_value()) << member;
}

TEST(AlertMessages, ParseRequest_RefusesOtherVersions) {
    for (const char* version : {"0", "2", "-1", "1.0", "\"1\"", "true", "null", "4294967297"})
        EXPECT_FALSE(AlertMessages::parseRequest(with("\"version\":1", std::string("\"version\":") + version))
                         .has_value())
            << version;
}

TEST(AlertMessages, ParseRequest_RefusesMembersOfAnotherType) {
    for (const char* value : {"1", "null", "true", "[]", "{}", "[\"T\"]"}) {
        EXPECT_FALSE(AlertMessages::parseRequest(with("\"T\"", value)).has_value()) << value;
        EXPECT_FALSE(AlertMessages::parseRequest(with("\"B\"", value)).has_value()) << value;
        EXPECT_FALSE(AlertMessages::parseRequest(with("\"Cancel\"", value)).has_value()) << value;
    }
    for (const char* value : {"1", "null", "\"true\"", "[]"})
        EXPECT_FALSE(AlertMessages::parseRequest(with("true", value)).has_value()) << value;
    for (const char* value : {"2", "null", "\"Retry\"", "{\"0\":\"Retry\"}"})
        EXPECT_FALSE(AlertMessages::parseRequest(with("[\"Retry\",\"Cancel\"]", value)).has_value()) << value;
}

TEST(AlertMessages, ParseRequest_RefusesNoButtonAndMoreThanThree) {
    const auto buttons = [](const char* list) {
        return AlertMessages::parseRequest(with("[\"Retry\",\"Cancel\"]", list)).has_value();
    };
    EXPECT_FALSE(buttons("[]"));
    EXPECT_TRUE(buttons(R"(["1"])"));
    EXPECT_TRUE(buttons(R"(["1","2","3"])"));
    EXPECT_FALSE(buttons(R"(["1","2","3","4"])"));
}

TEST(AlertMessages, ParseRequest_RefusesAHostThatCannotBeAProcess) {
    for (const char* host :
         {"0", "-1", "2147483648", "4294967297", "18446744073709551616", "1.5", "1e3", "\"4711\"", "null"})
        EXPECT_FALSE(AlertMessages::parseRequest(with("4711", host)).has_value()) << host;
    EXPECT_EQ(AlertMessages::parseRequest(with("4711", "2147483647"))->host, 2147483647);
}

TEST(AlertMessages, ParseRequest_RefusesBytesThatAreNotUtf8AndNulCharacters) {
    for (const char* text :
         {"\xff", "\xc3", "\xc0\x80", "\xed\xa0\x80", "\\ud800", "\\u0000", "\x01", "\n"}) {
        const std::string value = std::string("\"") + text + '"';
        EXPECT_FALSE(AlertMessages::parseRequest(with("\"T\"", value)).has_value()) << text;
        EXPECT_FALSE(AlertMessages::parseRequest(with("\"B\"", value)).has_value()) << text;
        EXPECT_FALSE(AlertMessages::parseRequest(with("\"Retry\"", value)).has_value()) << text;
    }
}

TEST(AlertMessages, ParseRequest_RefusesTextsThatAreTooLong) {
    const auto isRead = [](const char* text, size_t size) {
        return AlertMessages::parseRequest(with(text, '"' + std::string(size, 'x') + '"')).has_value();
    };
    EXPECT_TRUE(isRead("\"T\"", kLongestAlertTitle));
    EXPECT_FALSE(isRead("\"T\"", kLongestAlertTitle + 1));
    EXPECT_TRUE(isRead("\"B\"", kLongestAlertBody));
    EXPECT_FALSE(isRead("\"B\"", kLongestAlertBody + 1));
    EXPECT_TRUE(isRead("\"Cancel\"", kLongestAlertCaption));
    EXPECT_FALSE(isRead("\"Cancel\"", kLongestAlertCaption + 1));
}

TEST(AlertMessages, ParseRequest_RefusesALineThatIsTooLong) {
    const std::string longest = kRequest + std::string(kLongestAlertLine - kRequest.size(), ' ');
    EXPECT_TRUE(AlertMessages::parseRequest(longest).has_value());
    EXPECT_FALSE(AlertMessages::parseRequest(longest + ' ').has_value());
}

TEST(AlertMessages, Parse_DeeplyNestedValuesDoNotExhaustTheStack) {
    const size_t depth = 60000;
    const std::string value = std::string(depth, '[') + std::string(depth, ']');
    EXPECT_FALSE(AlertMessages::parseRequest(value).has_value());
    EXPECT_FALSE(AlertMessages::parseRequest(with("\"T\"", value)).has_value());
    EXPECT_TRUE(AlertMessages::parseRequest(with("\"title\"", "\"x\":" + value + ",\"title\"")).has_value());
    EXPECT_FALSE(AlertMessages::parseEvent("{\"event\":" + value + "}", 1).has_value());
    EXPECT_FALSE(AlertMessages::parseEvent(std::string(kLongestAlertLine, '['), 1).has_value());
}

// Events from the helper to the host.

TEST(AlertMessages, ComposeEvent_IsOneJsonObjectOnOneLine) {
    EXPECT_EQ(AlertMessages::compose(AlertEvent{AlertEvent::Kind::shown, 0}), "{\"event\":\"shown\"}\n");
    EXPECT_EQ(AlertMessages::compose(AlertEvent{AlertEvent::Kind::help, 0}), "{\"event\":\"help\"}\n");
    EXPECT_EQ(AlertMessages::compose(AlertEvent{AlertEvent::Kind::pressed, 2}),
              "{\"button\":2,\"event\":\"pressed\"}\n");
}

TEST(AlertMessages, ParseEvent_ReadsWhatWasComposed) {
    for (const AlertEvent event :
         {AlertEvent{AlertEvent::Kind::shown, 0}, AlertEvent{AlertEvent::Kind::help, 0},
          AlertEvent{AlertEvent::Kind::pressed, 0}, AlertEvent{AlertEvent::Kind::pressed, 2}}) {
        std::string line = AlertMessages::compose(event);
        line.pop_back();
        const auto read = AlertMessages::parseEvent(line, 3);
        ASSERT_TRUE(read.has_value()) << line;
        EXPECT_EQ(read->kind, event.kind) << line;
        EXPECT_EQ(read->button, event.button) << line;
    }
}

TEST(AlertMessages, ParseEvent_RefusesAButtonThatTheAlertDoesNotHave) {
    for (const char* button : {"2", "3", "-1", "1.0", "\"0\"", "null", "[0]", "true", "4294967296",
                               "18446744073709551615", "18446744073709551616"}) {
        const std::string line = std::string(R"({"event":"pressed","button":)") + button + "}";
        EXPECT_FALSE(AlertMessages::parseEvent(line, 2).has_value()) << line;
    }
    EXPECT_FALSE(AlertMessages::parseEvent(R"({"event":"pressed"})", 2).has_value());
    EXPECT_FALSE(AlertMessages::parseEvent(R"({"event":"pressed","button":0})", 0).has_value());
    EXPECT_EQ(AlertMessages::parseEvent(R"({"event":"pressed","button":1})", 2)->button, 1u);
}

TEST(AlertMessages, ParseEvent_RefusesUnknownEventsAndWhatIsNotAnEvent) {
    for (const char* line :
         {"", "{}", "[]", "null", "\"shown\"", R"({"event":"closed"})", R"({"event":"Shown"})",
          R"({"event":null})", R"({"event":1})", R"({"event":["shown"]})", R"({"shown":1})",
          R"({"event":"shown")", "{\"event\":\"shown\xff\"}"}) {
        EXPECT_FALSE(AlertMessages::parseEvent(line, 2).has_value()) << line;
    }
    EXPECT_FALSE(AlertMessages::parseEvent(std::string(R"({"event":"shown"})") + '\0', 2).has_value());
}

TEST(AlertMessages, ParseEvent_RefusesALineThatIsTooLong) {
    const std::string line = R"({"event":"shown"})";
    const std::string longest = line + std::string(kLongestAlertLine - line.size(), ' ');
    EXPECT_TRUE(AlertMessages::parseEvent(longest, 1).has_value());
    EXPECT_FALSE(AlertMessages::parseEvent(longest + ' ', 1).has_value());
}

}  // namespace
}  // namespace portability
