// Compares docs/protocol.md with the code: its tables, and the sentences that contain a number.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>

#include "InterProcessCommunication/IPC_via_AE.h"
#include "InterProcessCommunication/POSCommands.h"
#include "client/exceptions/POSException.h"
#include "dovrel/pos.h"
#include "platform/text/TextConversions.h"
#include "serialization/ByteArrayList.h"
#include "serialization/CPPExpandingByteArray.h"
#include "serialization/StructuredByteArrayReader.h"
#include "serialization/StructuredByteArrayWriter.h"
#include "server/SelfEvent.h"
#include "tests/support/DocumentPage.h"
#include "tests/support/library/Bytes.h"

namespace merrowd::test {
namespace {

using dovrel::CPPByteArray;
using dovrel::CPPException;
using dovrel::POSCommand;
using dovrel::POSField;
using dovrel::POSFieldForm;
using dovrel::test::DocumentPage;

class ProtocolPageTables : public testing::Test {
  protected:
    const DocumentPage page_{PROTOCOL_PAGE};
};

std::string formName(POSFieldForm form) {
    switch (form) {
        case POSFieldForm::kUInt32:
            return "u32";
        case POSFieldForm::kIdentifier:
            return "identifier";
        case POSFieldForm::kOptionalIdentifier:
            return "identifier or nothing";
        case POSFieldForm::kName:
            return "name";
        case POSFieldForm::kText:
            return "text";
        case POSFieldForm::kData:
            return "data";
    }
    return "";
}

// Returns a four-character code in the notation of the page.
std::string quoted(uint32_t code) {
    return {'\'',
            static_cast<char>(code >> 24),
            static_cast<char>(code >> 16),
            static_cast<char>(code >> 8),
            static_cast<char>(code),
            '\''};
}

// Returns the value of a cell that contains a number.
uint32_t parseNumber(const std::string& cell) {
    size_t end = 0;
    const unsigned long number = std::stoul(cell, &end);
    EXPECT_EQ(end, cell.size()) << cell;
    return static_cast<uint32_t>(number);
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// Returns a block with the type number 01020304 and a part with tag 0A0B0C0D and three bytes of data.
dovrel::CPPExpandingByteArray sampleBlock() {
    dovrel::CPPExpandingByteArray block;
    dovrel::StructuredByteArrayWriter writer;
    writer.initialize(block, 0x01020304);
    writer.writeBytesPart(0x0A0B0C0D, "xyz", 3);
    return block;
}

// Returns the bytes of the block that a row of a table describes, in hexadecimal.
std::string makeRowBytes(const DocumentPage::Row& row, uint32_t base) {
    CPPByteArray bytes;
    bytes.setFromPart(sampleBlock(), base + parseNumber(row.at(0)), parseNumber(row.at(1)));
    return dovrel::test::toHex(bytes);
}

TEST_F(ProtocolPageTables, TheTableOfTheBlock_IsWhatTheWriterWrites) {
    const std::vector<DocumentPage::Row> rows = page_.rowsUnder({"offset", "bytes", "what"});
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0].at(2), makeRowBytes(rows[0], 0) + ", \"AsAk\"");
    EXPECT_EQ(rows[1].at(2).rfind(makeRowBytes(rows[1], 0) + ", or 00 00 ", 0), 0u);
    EXPECT_EQ(rows[2].at(2), "type number, most significant byte first");
    EXPECT_EQ(makeRowBytes(rows[2], 0), "01 02 03 04");
    for (size_t row = 1; row < rows.size(); ++row)
        EXPECT_EQ(parseNumber(rows[row].at(0)),
                  parseNumber(rows[row - 1].at(0)) + parseNumber(rows[row - 1].at(1)));
}

TEST_F(ProtocolPageTables, TheBlockWithoutATypeNumber_IsReadAsThePageSays) {
    const std::vector<DocumentPage::Row> rows = page_.rowsUnder({"offset", "bytes", "what"});
    ASSERT_EQ(rows.size(), 4u);
    const std::string& what = rows[1].at(2);
    ASSERT_TRUE(has(what, "00 00 for a block without type number, whose parts begin at offset 6")) << what;
    const CPPByteArray block = dovrel::test::arrayFromHex("41 73 41 6B 00 00 00 00 00 05 00 00 00 01 78");
    dovrel::StructuredByteArrayReader reader;
    reader.initialize(&block);
    EXPECT_EQ(reader.getPartLength(5), 1u);
}

TEST_F(ProtocolPageTables, TheTableOfAPart_IsWhatTheWriterWrites) {
    const std::vector<DocumentPage::Row> blockRows = page_.rowsUnder({"offset", "bytes", "what"});
    const std::vector<DocumentPage::Row> rows = page_.rowsUnder({"offset in the part", "bytes", "what"});
    ASSERT_EQ(blockRows.size(), 4u);
    ASSERT_EQ(rows.size(), 3u);
    const uint32_t base = parseNumber(blockRows[3].at(0));
    EXPECT_EQ(rows[0].at(2), "tag, most significant byte first");
    EXPECT_EQ(makeRowBytes(rows[0], base), "0A 0B 0C 0D");
    EXPECT_EQ(rows[1].at(2), "length of the data, most significant byte first");
    EXPECT_EQ(makeRowBytes(rows[1], base), "00 00 00 03");
    EXPECT_EQ(rows[2].at(1), "length");
    EXPECT_EQ(rows[2].at(2), "data");
    EXPECT_EQ(makeRowBytes({rows[2].at(0), "3"}, base), "78 79 7A");
    EXPECT_EQ(sampleBlock().getSize(), base + parseNumber(rows[2].at(0)) + 3) << "there is no more";
}

TEST_F(ProtocolPageTables, TheTypeNumbers_AreThoseOfTheCode) {
    EXPECT_TRUE(page_.says("A **byte array list** is a block with the type number " +
                           std::to_string(dovrel::kByteArrayListType) + "."));
    EXPECT_TRUE(page_.says("A request or an answer is one structured block with the type number " +
                           std::to_string(dovrel::kTransferObjFormatVersion) + "."));
}

// The channel's tests check that each event really waits this long; they can see the events.
TEST_F(ProtocolPageTables, TheTimeOuts_AreThoseOfTheCode) {
    namespace serverEvent = dovrel::serverEvent;
    const uint32_t handshake = serverEvent::kWakeTimeOutMs * serverEvent::kTicksPerSecond / 1000;
    EXPECT_TRUE(page_.says("A client waits up to " + std::to_string(serverEvent::kDataTimeOutTicks) +
                           " ticks (1/" + std::to_string(serverEvent::kTicksPerSecond) +
                           " s) for an answer. It sends up to " + std::to_string(serverEvent::kWakeAttempts) +
                           " handshakes and waits up to " + std::to_string(handshake) +
                           " ticks for the answer to each."));
}

TEST_F(ProtocolPageTables, TheDirectParameters_AreThoseOfTheCode) {
    EXPECT_TRUE(page_.says("(keyword " + quoted(keyDirectObject) + ", type " + quoted(typeChar) + ")"));
    const std::vector<DocumentPage::Row> rows = page_.rowsUnder({"use", "class", "id"});
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[1].at(3), "the " + std::to_string(dovrel::serverEvent::kWakeTextSize) + " bytes \"" +
                                 dovrel::serverEvent::kWakeText + "\"");
}

TEST_F(ProtocolPageTables, TheTableOfEvents_IsThatOfTheCode) {
    std::vector<DocumentPage::Row> onPage = page_.rowsUnder({"use", "class", "id"});
    for (DocumentPage::Row& row : onPage)
        row.resize(3);
    std::vector<DocumentPage::Row> expected;
    const std::pair<const char*, EventKind> events[] = {
        {"data exchange", kDataEvent}, {"handshake", kHandshakeEvent}, {"quit", kQuitEvent}};
    for (const auto& [use, kind] : events)
        expected.push_back({use, quoted(kind.eventClass), quoted(kind.eventId)});
    EXPECT_EQ(onPage, expected);
}

TEST_F(ProtocolPageTables, TheHeaderFields_HaveTheValuesOfTheCode) {
    const std::vector<DocumentPage::Row> rows =
        page_.rowsUnder({"field", "name", "form", "in a request", "in an answer"});
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].at(3), std::to_string(dovrel::kTransferKindStandard));
    EXPECT_EQ(rows[1].at(3), std::to_string(dovrel::kMessageKindRequest));
    EXPECT_EQ(rows[1].at(4).rfind(std::to_string(dovrel::kMessageKindException) + ":", 0), 0u);
}

TEST_F(ProtocolPageTables, TheTableOfForms_NamesThoseOfTheCode) {
    std::set<std::string> expected;
    for (const POSFieldForm form :
         {POSFieldForm::kUInt32, POSFieldForm::kIdentifier, POSFieldForm::kOptionalIdentifier,
          POSFieldForm::kName, POSFieldForm::kText, POSFieldForm::kData}) {
        expected.insert(formName(form));
    }
    std::set<std::string> onPage;
    const std::string identifier = std::to_string(dovrel::kPOSIdentifierSize) + " bytes";
    for (const DocumentPage::Row& row : page_.rowsUnder({"form", "data"})) {
        onPage.insert(row[0]);
        if (!has(row[0], "identifier")) continue;
        EXPECT_EQ(row[1].rfind(identifier, 0), 0u) << row[1];
    }
    EXPECT_EQ(onPage, expected);
}

TEST_F(ProtocolPageTables, TheMeaningsThatNameANumber_HaveThatOfTheCode) {
    std::map<std::string, std::string> meanings;
    for (const DocumentPage::Row& row : page_.rowsUnder({"field", "name", "form", "meaning"}))
        meanings[row.at(1)] += row.at(3);
    EXPECT_EQ(meanings["interface version"], std::to_string(dovrel::kPOSInterfaceVersion));
    EXPECT_EQ(meanings["executer word"], dovrel::numberToText(dovrel::kNoExecuter, 16, 8) + ": no executer");
    EXPECT_TRUE(has(meanings["registration flags"], "a u32; bit 0:"));
    EXPECT_EQ(dovrel::kRegistrationChecksClasses, 1u << 0);
    for (const uint32_t option :
         {POS_OPTION_1104, POS_OPTION_SILENT_REGISTRATION, POS_OPTION_SILENT_MESSAGES})
        EXPECT_TRUE(has(meanings["options"], std::to_string(option))) << option;
}

std::string listNumbers(const dovrel::POSFieldList& fields) {
    std::string numbers;
    for (const POSField& field : fields)
        numbers += (numbers.empty() ? "" : ", ") + std::to_string(field.number);
    return numbers;
}

TEST_F(ProtocolPageTables, TheTableOfCommands_IsThatOfTheCode) {
    std::vector<DocumentPage::Row> expected;
    for (const POSCommand& command : dovrel::kPOSCommands) {
        expected.push_back({std::to_string(command.code), command.name, listNumbers(command.request),
                            listNumbers(command.reply)});
    }
    EXPECT_EQ(page_.rowsUnder({"code", "command"}), expected);
}

TEST_F(ProtocolPageTables, TheTablesOfFields_AreThoseOfTheCode) {
    namespace posField = dovrel::posField;
    std::set<DocumentPage::Row> expected;
    const auto expectField = [&expected](const POSField& field) {
        expected.insert({std::to_string(field.number), field.name, formName(field.form)});
    };
    for (const POSField& field : {posField::kTransferKind, posField::kMessageKind, posField::kCommand,
                                  posField::kExceptionText, posField::kExceptionCode}) {
        expectField(field);
    }
    for (const POSCommand& command : dovrel::kPOSCommands) {
        for (const POSField& field : command.request)
            expectField(field);
        for (const POSField& field : command.reply)
            expectField(field);
    }

    std::set<DocumentPage::Row> onPage;
    for (DocumentPage::Row row : page_.rowsUnder({"field", "name", "form"})) {
        row.resize(3);
        EXPECT_TRUE(onPage.insert(row).second) << row[0] << " stands there twice";
    }
    EXPECT_EQ(onPage, expected);
}

TEST_F(ProtocolPageTables, TheTableOfExceptionCodes_IsThatOfTheCode) {
    std::set<std::string> expected{"0", "3"};
    for (uint32_t code = 0; code < 1000; ++code) {
        const std::unique_ptr<CPPException> exception(dovrel::newPOSExceptionForCode(code, ""));
        if (exception != nullptr) expected.insert(std::to_string(code));
    }
    std::set<std::string> onPage;
    for (const DocumentPage::Row& row : page_.rowsUnder({"code", "what went wrong"}))
        onPage.insert(row[0]);
    EXPECT_EQ(onPage, expected);
}

}  // namespace
}  // namespace merrowd::test
