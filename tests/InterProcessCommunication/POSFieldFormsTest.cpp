#include "InterProcessCommunication/POSFieldForms.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdio>
#include <memory>
#include <string>

#include "client/exceptions/ExceptionTypeCodes.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "tests/InterProcessCommunication/TransportTexts.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::arrayFromHex;
using test::expectFailure;
using test::makeArray;
using test::toHex;
using test::toText;

POSServerMessage readMessage(const std::string& hexData) {
    POSTransferObj object;
    object.writeByteArray(120, arrayFromHex(hexData));
    return readServerMessage(object, 120);
}

// A NUL-terminated text that needs little memory: the same 2 MiB of a file are mapped again and again.
class RepeatedText {
  public:
    static constexpr size_t kStretch = size_t{2} << 20;

    explicit RepeatedText(size_t stretches) : size_((stretches + 1) * kStretch) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
        if (file == nullptr) return;
        const std::string stretch(kStretch, 'x');
        if (std::fwrite(stretch.data(), 1, kStretch, file.get()) != kStretch) return;
        if (std::fflush(file.get()) != 0) return;
        // The last stretch stays as it is and contains the NUL.
        void* const place = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE | MAP_ANON, -1, 0);
        if (place == MAP_FAILED) return;
        text_ = static_cast<char*>(place);
        isComplete_ = true;
        for (size_t i = 0; isComplete_ && i < stretches; ++i)
            isComplete_ = mmap(text_ + i * kStretch, kStretch, PROT_READ, MAP_SHARED | MAP_FIXED,
                               fileno(file.get()), 0) != MAP_FAILED;
    }
    RepeatedText(const RepeatedText&) = delete;
    RepeatedText& operator=(const RepeatedText&) = delete;
    ~RepeatedText() {
        if (text_ != nullptr) munmap(text_, size_);
    }

    /// Returns the text, or null if it could not be made.
    const char* get() const { return isComplete_ ? text_ : nullptr; }

  private:
    const size_t size_;
    char* text_ = nullptr;
    bool isComplete_ = false;
};

// Returns the wire form of a field that is written after the header fields.
std::string toWireForm(const StructuredPart& field) {
    const std::string header = toHex(POSTransferObj(1, 10, 14).bytes());
    const std::string all = toHex(POSTransferObj(1, 10, 14, field).bytes());
    EXPECT_EQ(all.substr(0, header.size()), header);
    return all.substr(header.size());
}

TEST(POSFieldForms, NameField_HasTheTerminatingZero) {
    EXPECT_EQ(toWireForm(makeNameField(107, "add")), " 00 00 00 6B 00 00 00 04 61 64 64 00");
}

TEST(POSFieldForms, NameField_OfTheEmptyName_IsOneZeroByte) {
    EXPECT_EQ(toWireForm(makeNameField(100, "")), " 00 00 00 64 00 00 00 01 00");
}

// 2^32 + 1 bytes, which are 1 byte if the length is cut to 32 bits.
TEST(POSFieldForms, NameField_OfFourGibibytes_IsNotCutButFailsTheRequest) {
    // With 32 bits no such text fits into the address space.
    if (sizeof(size_t) == sizeof(uint32_t)) return;
    constexpr uint64_t kLength = uint64_t{1} << 32;
    const RepeatedText name(static_cast<size_t>(kLength / RepeatedText::kStretch));
    ASSERT_NE(name.get(), nullptr);
    const StructuredPart field = makeNameField(107, name.get());
    expectFailure<StructuredWriteFailedException>(
        [&] { POSTransferObj(1, 10, 14, field); }, exceptionTypeCode::kStructuredWriteFailed,
        "384269E80233: ", "Byte array too small (or did not expand as expected)");
}

TEST(POSFieldForms, IdentifierField_IsItsSixteenBytes) {
    const CPPByteArray identifier = makeArray("0123456789abcdef");
    EXPECT_EQ(toWireForm(makeIdentifierField(105, identifier)),
              " 00 00 00 69 00 00 00 10 30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66");
}

TEST(POSFieldForms, IdentifierField_OfAnotherSize_Fails) {
    const test::TransportTexts texts;
    for (const char* wrong : {"", "Echo", "fifteen bytes..", "seventeen bytes.."}) {
        expectFailure<CPPException>([&] { makeIdentifierField(105, makeArray(wrong)); },
                                    exceptionTypeCode::kCPPException, "???",
                                    test::TransportTexts::kWrongIdentifier);
    }
}

TEST(POSFieldForms, ReadIdentifier_ReplacesTheOneThatIsThere) {
    POSTransferObj object;
    object.writeByteArray(105, makeArray("0123456789abcdef"));
    CPPByteArray identifier = makeArray("old");
    readIdentifier(object, 105, identifier);
    EXPECT_EQ(toText(identifier), "0123456789abcdef");
}

TEST(POSFieldForms, ReadIdentifier_OfAnotherSize_FailsAndLeavesTheIdentifierUnchanged) {
    const test::TransportTexts texts;
    for (const char* wrong : {"", "Echo", "fifteen bytes..", "seventeen bytes.."}) {
        POSTransferObj object;
        object.writeByteArray(105, makeArray(wrong));
        CPPByteArray identifier = makeArray("old");
        expectFailure<CPPException>([&] { readIdentifier(object, 105, identifier); },
                                    exceptionTypeCode::kCPPException, "???",
                                    test::TransportTexts::kWrongIdentifier);
        EXPECT_EQ(toText(identifier), "old");
    }
}

TEST(POSFieldForms, ServerMessage_IsTheWordOfFlagsAndTheText) {
    const POSServerMessage message = readMessage("01 02 00 80 48 69 21");
    EXPECT_TRUE(message.isPresent());
    EXPECT_EQ(message.flags, 0x80000201u);
    EXPECT_EQ(message.text, "Hi!");
}

TEST(POSFieldForms, ServerMessage_WithFlagsAndNoText_IsPresentAndEmpty) {
    const POSServerMessage message = readMessage("01 00 00 00");
    EXPECT_TRUE(message.isPresent());
    EXPECT_EQ(message.text, "");
}

TEST(POSFieldForms, ServerMessage_WithoutFlags_IsNotPresent) {
    EXPECT_FALSE(readMessage("00 00 00 00 48 69").isPresent());
}

TEST(POSFieldForms, ServerMessage_OfAnEmptyField_IsNoMessage) {
    EXPECT_FALSE(readMessage("").isPresent());
}

TEST(POSFieldForms, ServerMessage_OfAFieldShorterThanItsFlags_IsNoMessage) {
    for (const char* cut : {"01", "01 01", "01 01 01"}) {
        EXPECT_FALSE(readMessage(cut).isPresent()) << cut;
        EXPECT_EQ(readMessage(cut).text, "") << cut;
    }
}

TEST(POSFieldForms, ServerMessage_OfAMissingField_IsTheReadersFailure) {
    POSTransferObj object;
    expectFailure<PartNotFoundException>([&] { readServerMessage(object, 120); },
                                         exceptionTypeCode::kPartNotFound, "384181A400FA: ", "2");
}

}  // namespace
}  // namespace dovrel
