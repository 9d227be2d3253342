// What the platform promises about descriptors and the contents of events.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "Events.h"

namespace {

// Values that no call writes by itself.
constexpr DescType kOddType = 0x5A5A5A5A;
constexpr Size kOddSize = 0x5A5A;

Descriptor anEvent() {
    return makeEvent(makeAddress("NOBO"), kEcho);
}

// The members of a packed structure have no addresses that could be handed on.
bool isNull(AEDesc desc) {
    return desc.descriptorType == typeNull && desc.dataHandle == nullptr;
}

AEDataStorage oddHandle() {
    return reinterpret_cast<AEDataStorage>(static_cast<intptr_t>(0x5A5A5A50));
}

}  // namespace

TEST(AEDataModel, AEDesc_IsPackedToTwo) {
    EXPECT_EQ(sizeof(AEDesc), 4 + sizeof(void*));
    EXPECT_EQ(sizeof(AEKeyDesc), 8 + sizeof(void*));
}

TEST(AEDataModel, CreateDesc_CopiesTheBytes) {
    char text[] = "abc\0def";
    Descriptor desc;
    ASSERT_EQ(AECreateDesc(typeChar, text, 7, desc.get()), noErr);
    std::memset(text, '#', sizeof text);
    EXPECT_EQ(desc.desc.descriptorType, DescType{typeChar});
    EXPECT_EQ(AEGetDescDataSize(desc.get()), 7);
    char copy[8] = {'.', '.', '.', '.', '.', '.', '.', '.'};
    EXPECT_EQ(AEGetDescData(desc.get(), copy, 7), noErr);
    EXPECT_EQ(std::string(copy, 8), std::string("abc\0def.", 8)) << "no terminating zero";
}

TEST(AEDataModel, CreateDesc_OfNoBytes_IsADescriptor) {
    Descriptor desc;
    ASSERT_EQ(AECreateDesc(typeChar, nullptr, 0, desc.get()), noErr);
    EXPECT_EQ(desc.desc.descriptorType, DescType{typeChar});
    EXPECT_EQ(AEGetDescDataSize(desc.get()), 0);
}

TEST(AEDataModel, CreateDesc_NegativeSize_IsAnErrorAndANullDescriptor) {
    AEDesc desc = {kOddType, oddHandle()};
    EXPECT_NE(AECreateDesc(typeChar, "abc", -1, &desc), noErr);
    EXPECT_TRUE(isNull(desc));
}

TEST(AEDataModel, GetDescData_SmallBuffer_IsFilledAndNotOverrun) {
    Descriptor desc;
    AECreateDesc(typeChar, "abcdef", 6, desc.get());
    char copy[4] = {'.', '.', '.', '.'};
    EXPECT_EQ(AEGetDescData(desc.get(), copy, 3), noErr);
    EXPECT_EQ(std::string(copy, 4), "abc.");
}

TEST(AEDataModel, DisposeDesc_LeavesANullDescriptor) {
    AEDesc desc = {typeNull, nullptr};
    AECreateDesc(typeChar, "abc", 3, &desc);
    EXPECT_EQ(AEDisposeDesc(&desc), noErr);
    EXPECT_TRUE(isNull(desc));
    EXPECT_EQ(AEDisposeDesc(&desc), noErr) << "a null descriptor may be disposed of again";
}

TEST(AEDataModel, InitializeDesc_FreesNothing) {
    AEDesc desc = {kOddType, oddHandle()};
    AEInitializeDesc(&desc);
    EXPECT_TRUE(isNull(desc));
}

TEST(AEDataModel, CreateAppleEvent_CopiesTheTarget) {
    Descriptor event;
    {
        const Descriptor address = makeAddress("NOBO");
        ASSERT_EQ(AECreateAppleEvent('clas', 'idid', address.get(), kAutoGenerateReturnID, kAnyTransactionID,
                                     event.get()),
                  noErr);
    }
    EXPECT_EQ(event.desc.descriptorType, DescType{typeAppleEvent});
    DescType type = kOddType;
    OSType signature = 0;
    Size size = kOddSize;
    EXPECT_EQ(AEGetAttributePtr(event.get(), keyAddressAttr, typeWildCard, &type, &signature,
                                sizeof signature, &size),
              noErr);
    EXPECT_EQ(type, DescType{typeApplSignature});
    EXPECT_EQ(size, 4);
    EXPECT_EQ(signature, OSType{'NOBO'});
}

TEST(AEDataModel, CreateAppleEvent_KeepsClassAndIdentifiers) {
    Descriptor event;
    ASSERT_EQ(AECreateAppleEvent('clas', 'idid', makeAddress("NOBO").get(), 1234, 56789, event.get()), noErr);
    OSType eventClass = 0;
    OSType eventID = 0;
    SInt32 returnID = 0;
    SInt32 transactionID = 0;
    AEGetAttributePtr(event.get(), keyEventClassAttr, typeType, nullptr, &eventClass, sizeof eventClass,
                      nullptr);
    AEGetAttributePtr(event.get(), keyEventIDAttr, typeType, nullptr, &eventID, sizeof eventID, nullptr);
    AEGetAttributePtr(event.get(), keyReturnIDAttr, typeSInt32, nullptr, &returnID, sizeof returnID, nullptr);
    AEGetAttributePtr(event.get(), keyTransactionIDAttr, typeSInt32, nullptr, &transactionID,
                      sizeof transactionID, nullptr);
    EXPECT_EQ(eventClass, OSType{'clas'});
    EXPECT_EQ(eventID, OSType{'idid'});
    EXPECT_EQ(returnID, 1234);
    EXPECT_EQ(transactionID, 56789);
}

TEST(AEDataModel, CreateAppleEvent_AutomaticReturnID_DiffersFromEventToEvent) {
    SInt32 ids[2] = {-1, -1};
    for (SInt32& id : ids) {
        const Descriptor event = anEvent();
        AEGetAttributePtr(event.get(), keyReturnIDAttr, typeSInt32, nullptr, &id, sizeof id, nullptr);
    }
    EXPECT_NE(ids[0], -1);
    EXPECT_NE(ids[0], ids[1]);
}

TEST(AEDataModel, PutParamPtr_CopiesTheBytes) {
    Descriptor event = anEvent();
    char text[] = "bytes";
    ASSERT_EQ(AEPutParamPtr(event.get(), keyDirectObject, typeChar, text, 5), noErr);
    std::memset(text, '#', sizeof text);
    EXPECT_EQ(textOf(event), "bytes");
}

TEST(AEDataModel, PutParamPtr_SameKeyword_ReplacesWhateverTheSizes) {
    Descriptor event = anEvent();
    putText(event, "neighbour before", 'befo');
    putText(event, "short");
    putText(event, "neighbour after", 'afte');
    for (const std::string& text : {std::string("other"), std::string(), std::string(100, 'x'),
                                    std::string(40000, 'y'), std::string("back")}) {
        ASSERT_EQ(putText(event, text), noErr);
        EXPECT_EQ(textOf(event), text);
        EXPECT_EQ(textOf(event, 'befo'), "neighbour before");
        EXPECT_EQ(textOf(event, 'afte'), "neighbour after");
    }
}

TEST(AEDataModel, PutParamPtr_ReplacingByAnotherType_ChangesTheType) {
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

TEST(AEDataModel, PutParamPtr_OnANullDescriptor_IsNotAnAEDesc) {
    Descriptor null;
    EXPECT_EQ(AEPutParamPtr(null.get(), keyDirectObject, typeChar, "abc", 3), errAENotAEDesc);
    EXPECT_EQ(null.desc.descriptorType, DescType{typeNull});
}

TEST(AEDataModel, PutParamPtr_BinaryBytes_StayAsTheyAre) {
    Descriptor event = anEvent();
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    ASSERT_EQ(putText(event, bytes), noErr);
    EXPECT_EQ(textOf(event), bytes);
}

TEST(AEDataModel, PutParamPtr_ManyKeywords_AreAllKept) {
    Descriptor event = anEvent();
    for (AEKeyword keyword = 1; keyword <= 500; ++keyword) {
        ASSERT_EQ(putText(event, "value " + std::to_string(keyword), keyword), noErr);
    }
    for (AEKeyword keyword = 1; keyword <= 500; ++keyword) {
        EXPECT_EQ(textOf(event, keyword), "value " + std::to_string(keyword));
    }
}

TEST(AEDataModel, GetParamPtr_WithoutBuffer_TellsTheSize) {
    Descriptor event = anEvent();
    putText(event, "twelve bytes");
    DescType type = kOddType;
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, &type, nullptr, 0, &size), noErr);
    EXPECT_EQ(type, DescType{typeChar});
    EXPECT_EQ(size, 12);
}

TEST(AEDataModel, GetParamPtr_SmallBuffer_IsNoErrorAndTellsTheFullSize) {
    Descriptor event = anEvent();
    putText(event, "twelve bytes");
    char buffer[8] = {'.', '.', '.', '.', '.', '.', '.', '.'};
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, nullptr, buffer, 6, &size), noErr);
    EXPECT_EQ(std::string(buffer, 8), "twelve..");
    EXPECT_EQ(size, 12);
}

TEST(AEDataModel, GetParamPtr_LargeBuffer_IsTouchedAsFarAsNeeded) {
    Descriptor event = anEvent();
    putText(event, "abc");
    char buffer[6] = {'.', '.', '.', '.', '.', '.'};
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, nullptr, buffer, 6, &size), noErr);
    EXPECT_EQ(std::string(buffer, 6), "abc...");
    EXPECT_EQ(size, 3);
}

TEST(AEDataModel, GetParamPtr_ZeroLength_IsNoError) {
    Descriptor event = anEvent();
    putText(event, "");
    Size size = kOddSize;
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeChar, nullptr, nullptr, 0, &size), noErr);
    EXPECT_EQ(size, 0);
}

TEST(AEDataModel, GetParamPtr_AbsentKeyword_LeavesOutputsUntouched) {
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

TEST(AEDataModel, GetParamPtr_WildCard_GivesTheStoredType) {
    Descriptor event = anEvent();
    ASSERT_EQ(AEPutParamPtr(event.get(), keyDirectObject, 'priv', "abc", 3), noErr);
    DescType type = kOddType;
    char buffer[3];
    EXPECT_EQ(AEGetParamPtr(event.get(), keyDirectObject, typeWildCard, &type, buffer, 3, nullptr), noErr);
    EXPECT_EQ(type, DescType{'priv'});
    EXPECT_EQ(std::string(buffer, 3), "abc");
}

TEST(AEDataModel, GetParamPtr_PrivateTypeAsText_HasNoCoercion) {
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

TEST(AEDataModel, GetParamPtr_NumberAsText_IsDecimal) {
    Descriptor event = anEvent();
    const SInt32 number = -1708;
    AEPutParamPtr(event.get(), keyErrorNumber, typeSInt32, &number, sizeof number);
    EXPECT_EQ(textOf(event, keyErrorNumber), "-1708");
}

TEST(AEDataModel, GetParamPtr_TextAsNumber_IsItsValue) {
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

TEST(AEDataModel, GetParamPtr_NumbersOfOtherWidth_AreConverted) {
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

TEST(AEDataModel, GetParamPtr_OfANullDescriptor_Fails) {
    const Descriptor null;
    Size size = kOddSize;
    EXPECT_NE(AEGetParamPtr(null.get(), keyDirectObject, typeChar, nullptr, nullptr, 0, &size), noErr);
    EXPECT_EQ(size, kOddSize);
}

TEST(AEDataModel, GetParamPtr_OfAPlainDescriptor_Fails) {
    Descriptor text;
    AECreateDesc(typeChar, "abc", 3, text.get());
    Size size = kOddSize;
    EXPECT_NE(AEGetParamPtr(text.get(), keyDirectObject, typeChar, nullptr, nullptr, 0, &size), noErr);
    EXPECT_EQ(size, kOddSize);
}

TEST(AEDataModel, SizeOfParam_AbsentKeyword_LeavesOutputsUntouched) {
    const Descriptor event = anEvent();
    DescType type = kOddType;
    Size size = kOddSize;
    EXPECT_EQ(AESizeOfParam(event.get(), keyDirectObject, &type, &size), errAEDescNotFound);
    EXPECT_EQ(type, kOddType);
    EXPECT_EQ(size, kOddSize);
}

TEST(AEDataModel, PutAttributePtr_IsNoParameter) {
    Descriptor event = anEvent();
    const SInt32 number = 7;
    ASSERT_EQ(AEPutAttributePtr(event.get(), 'mine', typeSInt32, &number, sizeof number), noErr);
    SInt32 read = 0;
    EXPECT_EQ(AEGetAttributePtr(event.get(), 'mine', typeSInt32, nullptr, &read, sizeof read, nullptr),
              noErr);
    EXPECT_EQ(read, 7);
    EXPECT_EQ(AESizeOfParam(event.get(), 'mine', nullptr, nullptr), errAEDescNotFound);
}

TEST(AEDataModel, PutParamPtr_OfManyMegabytes_IsKept) {
    Descriptor event = anEvent();
    std::string bytes(30 << 20, 'x');
    bytes.front() = 'a';
    bytes.back() = 'z';
    ASSERT_EQ(putText(event, bytes), noErr);
    EXPECT_EQ(textOf(event), bytes);
}
