#include "settings/LogFileWriter.h"

#include <gtest/gtest.h>

#include <string>

namespace dovrel {
namespace {

CPPByteArray filled(uint32_t length) {
    CPPByteArray array;
    array.setFilled(length, 0xAB);
    return array;
}

TEST(LogFileWriter, WriteTitle_IsALineOfTwoSlashesAndTheTitle) {
    std::string log;
    LogFileWriter(log).writeTitle("Error log");
    EXPECT_EQ(log, "//Error log\n");
}

TEST(LogFileWriter, WriteIntAndString_AreAKeyLineAndAValueLine) {
    std::string log = "before\n";
    LogFileWriter writer(log);
    writer.writeInt("code", -600);
    writer.writeString("message", "text");
    EXPECT_EQ(log, "before\n//code\nINT:-600\n//message\nSTR:text\n");
}

TEST(LogFileWriter, WriteString_LineFeeds_AreEscaped) {
    std::string log;
    LogFileWriter(log).writeString("message", "one\ntwo\n");
    EXPECT_EQ(log, "//message\nSTR:onechg-lftwochg-lf\n");
}

TEST(LogFileWriter, WriteBinary_17Bytes_AreALineOf32DigitsAndALineOf2) {
    std::string log;
    LogFileWriter(log).writeBinary("bytes", filled(17));
    EXPECT_EQ(log, "//bytes\nBAR:ABABABABABABABABABABABABABABABAB\nAB\n");
}

TEST(LogFileWriter, WriteBinary_16Bytes_AreOneLine) {
    std::string log;
    LogFileWriter(log).writeBinary("bytes", filled(16));
    EXPECT_EQ(log, "//bytes\nBAR:ABABABABABABABABABABABABABABABAB\n");
}

TEST(LogFileWriter, WriteBinary_33Bytes_AreThreeLines) {
    std::string log;
    LogFileWriter(log).writeBinary("bytes", filled(33));
    EXPECT_EQ(log, "//bytes\nBAR:ABABABABABABABABABABABABABABABAB\nABABABABABABABABABABABABABABABAB\nAB\n");
}

TEST(LogFileWriter, WriteBinary_NoBytes_IsOnlyTheTypeWord) {
    std::string log;
    LogFileWriter writer(log);
    writer.writeBinary("array", CPPByteArray());
    writer.writeBinary("pointer", nullptr, 0);
    EXPECT_EQ(log, "//array\nBAR:\n//pointer\nBAR:\n");
}

TEST(LogFileWriter, WriteBinary_FromAPointer_IsTheSameAsFromAnArray) {
    std::string log;
    LogFileWriter(log).writeBinary("bytes", "\x01\x02", 2);
    EXPECT_EQ(log, "//bytes\nBAR:0102\n");
}

}  // namespace
}  // namespace dovrel
