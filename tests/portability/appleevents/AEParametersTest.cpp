// Contract tests of the parameters and attributes of events.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Events.h"

TEST(AEParameters, PutParamPtr_CopiesTheBytes) {
    Descriptor event = anEvent();
    char text[] = "bytes";
    ASSERT_EQ(AEPutParamPtr(event.get(), keyDirectObject, typeChar, text, 5), noErr);
    std::memset(text, '#', sizeof text);
    EXPECT_EQ(toText(event), "bytes");
}

TEST(AEParameters, PutParamPtr_SameKeyword_ReplacesWhateverTheSizes) {
    Descriptor event = anEvent();
    putText(event, "neighbour before", 'befo');
    putText(event, "short");
    putText(event, "neighbour after", 'afte');
    for (const std::string& text : {std::string("other"), std::string(), std::string(100, 'x'),
                                    std::string(40000, 'y'), std::string("back")}) {
        ASSERT_EQ(putText(event, text), noErr);
        EXPECT_EQ(toText(event), text);
        EXPECT_EQ(toText(event, 'befo'), "neighbour before");
        EXPECT_EQ(toText(event, 'afte'), "neighbour after");
    }
}

TEST(AEParameters, PutParamPtr_ReplacingByAnotherType_ChangesTheType) {
    Descriptor event = anEvent();
    putText(event, "1234");
    const SInt32 number = 5;
    ASSERT_EQ(AEPutParamPtr(event.get(), keyDirectObject, typeSInt32, &number, sizeof number), noErr);
    DescType type = kOddType;
    Size size = kOddSize;
    EXPECT_EQ(AESizeOfParam(event.get(), keyDirectObject, &type, &size), noErr);
    EXPECT_EQ(type, DescType{typeSInt32});
    EXPECT_EQ(size, 4);
}

TEST(AEParameters, PutParamPtr_OnANullDescriptor_IsNotAnAEDesc) {
    Descriptor null;
    EXPECT_EQ(AEPutParamPtr(null.get(), keyDirectObject, typeChar, "abc", 3), errAENotAEDesc);
    EXPECT_EQ(null.desc.descriptorType, DescType{typeNull});
}

TEST(AEParameters, PutParamPtr_BinaryBytes_StayAsTheyAre) {
    Descriptor event = anEvent();
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    ASSERT_EQ(putText(event, bytes), noErr);
    EXPECT_EQ(toText(event), bytes);
}

TEST(AEParameters, PutParamPtr_ManyKeywords_AreAllKept) {
    Descriptor event = anEvent();
    for (AEKeyword keyword = 1; keyword <= 500; ++keyword) {
        ASSERT_EQ(putText(event, "value " + std::to_string(keyword), keyword), noErr);
    }
    for (AEKeyword keyword = 1; keyword <= 500; ++keyword) {
        EXPECT_EQ(toText(event, keyword), "value " + std::to_string(keyword));
    }
}

TEST(AEParameters, GetParamPtr_WithoutBuffer_TellsTheSize) {
    Descriptor event = anEvent();
    putText(event, "twelve bytes");
    DescType type = kOddType;
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, &type, nullptr, 0, &size), noErr);
    EXPECT_EQ(type, DescType{typeChar});
    EXPECT_EQ(size, 12);
}

TEST(AEParameters, GetParamPtr_SmallBuffer_IsNoErrorAndTellsTheFullSize) {
    Descriptor event = anEvent();
    putText(event, "twelve bytes");
    char buffer[8] = {'.', '.', '.', '.', '.', '.', '.', '.'};
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, nullptr, buffer, 6, &size), noErr);
    EXPECT_EQ(std::string(buffer, 8), "twelve..");
    EXPECT_EQ(size, 12);
}

TEST(AEParameters, GetParamPtr_LargeBuffer_IsTouchedAsFarAsNeeded) {
    Descriptor event = anEvent();
    putText(event, "abc");
    char buffer[6] = {'.', '.', '.', '.', '.', '.'};
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, nullptr, buffer, 6, &size), noErr);
    EXPECT_EQ(std::string(buffer, 6), "abc...");
    EXPECT_EQ(size, 3);
}

TEST(AEParameters, GetParamPtr_ZeroLength_IsNoError) {
    Descriptor event = anEvent();
    putText(event, "");
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, nullptr, nullptr, 0, &size), noErr);
    EXPECT_EQ(size, 0);
}

TEST(AEParameters, GetParamPtr_AbsentKeyword_LeavesOutputsUntouched) {
    Descriptor event = anEvent();
    putText(event, "text", 'aaaa');
    char buffer[4] = {'.', '.', '.', '.'};
    Size size = kOddSize;
    DescType type = kOddType;
    EXPECT_EQ(AEGetParamPtr(event.get(), 'bbbb', typeChar, &type, buffer, sizeof buffer, &size),
              errAEDescNotFound);
    EXPECT_EQ(size, kOddSize);
    EXPECT_EQ(type, kOddType);
    EXPECT_EQ(std::string(buffer, 4), "....");
}

TEST(AEParameters, GetParamPtr_WildCard_GivesTheStoredType) {
    Descriptor event = anEvent();
    ASSERT_EQ(AEPutParamPtr(event.get(), keyDirectObject, 'priv', "abc", 3), noErr);
    DescType type = kOddType;
    char buffer[3];
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeWildCard, &type, buffer, 3, nullptr), noErr);
    EXPECT_EQ(type, DescType{'priv'});
    EXPECT_EQ(std::string(buffer, 3), "abc");
}

TEST(AEParameters, GetParamPtr_PrivateTypeAsText_HasNoCoercion) {
    Descriptor event = anEvent();
    AEPutParamPtr(event.get(), keyDirectObject, 'priv', "abc", 3);
    char buffer[4] = {'.', '.', '.', '.'};
    Size size = kOddSize;
    DescType type = kOddType;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, &type, buffer, sizeof buffer, &size),
              errAECoercionFail);
    EXPECT_EQ(size, kOddSize);
    EXPECT_EQ(type, kOddType);
    EXPECT_EQ(std::string(buffer, 4), "....");
}

TEST(AEParameters, GetParamPtr_NumberAsText_IsDecimal) {
    Descriptor event = anEvent();
    const SInt32 number = -1708;
    AEPutParamPtr(event.get(), keyErrorNumber, typeSInt32, &number, sizeof number);
    EXPECT_EQ(toText(event, keyErrorNumber), "-1708");
}

TEST(AEParameters, GetParamPtr_TextAsNumber_IsItsValue) {
    Descriptor event = anEvent();
    putText(event, "-43");
    DescType type = kOddType;
    SInt32 number = 0;
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeSInt32, &type, &number, sizeof number, &size),
              noErr);
    EXPECT_EQ(number, -43);
    EXPECT_EQ(type, DescType{typeSInt32});
    EXPECT_EQ(size, 4) << "the size after the coercion";
}

TEST(AEParameters, GetParamPtr_NumbersOfOtherWidth_AreConverted) {
    Descriptor event = anEvent();
    const SInt16 number = -7;
    AEPutParamPtr(event.get(), keyDirectObject, typeSInt16, &number, sizeof number);
    SInt32 wide = 0;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeSInt32, nullptr, &wide, sizeof wide, nullptr),
              noErr);
    EXPECT_EQ(wide, -7);
    SInt64 wider = 0;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeSInt64, nullptr, &wider, sizeof wider, nullptr),
              noErr);
    EXPECT_EQ(wider, -7);
}

TEST(AEParameters, GetParamPtr_OfANullDescriptor_Fails) {
    const Descriptor null;
    Size size = kOddSize;
    EXPECT_NE(AEGetParamPtr(null.get(), keyDirectObject, typeChar, nullptr, nullptr, 0, &size), noErr);
    EXPECT_EQ(size, kOddSize);
}

TEST(AEParameters, GetParamPtr_OfAPlainDescriptor_Fails) {
    Descriptor text;
    AECreateDesc(typeChar, "abc", 3, text.get());
    Size size = kOddSize;
    EXPECT_NE(AEGetParamPtr(text.get(), keyDirectObject, typeChar, nullptr, nullptr, 0, &size), noErr);
    EXPECT_EQ(size, kOddSize);
}

TEST(AEParameters, SizeOfParam_AbsentKeyword_LeavesOutputsUntouched) {
    const Descriptor event = anEvent();
    DescType type = kOddType;
    Size size = kOddSize;
    EXPECT_EQ(AESizeOfParam(event.get(), keyDirectObject, &type, &size), errAEDescNotFound);
    EXPECT_EQ(type, kOddType);
    EXPECT_EQ(size, kOddSize);
}

TEST(AEParameters, PutAttributePtr_IsNoParameter) {
    Descriptor event = anEvent();
    const SInt32 number = 7;
    ASSERT_EQ(AEPutAttributePtr(event.get(), 'mine', typeSInt32, &number, sizeof number), noErr);
    SInt32 read = 0;
    EXPECT_EQ(AEGetAttributePtr(event.get(), 'mine', typeSInt32, nullptr, &read, sizeof read, nullptr),
              noErr);
    EXPECT_EQ(read, 7);
    EXPECT_EQ(AESizeOfParam(event.get(), 'mine', nullptr, nullptr), errAEDescNotFound);
}

TEST(AEParameters, PutParamPtr_OfManyMegabytes_IsKept) {
    Descriptor event = anEvent();
    std::string bytes(30 << 20, 'x');
    bytes.front() = 'a';
    bytes.back() = 'z';
    ASSERT_EQ(putText(event, bytes), noErr);
    EXPECT_EQ(toText(event), bytes);
}
