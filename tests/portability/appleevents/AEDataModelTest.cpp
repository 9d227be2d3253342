// Contract tests of descriptors and of creating events.
#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Events.h"

namespace {

// Takes a copy, because a reference cannot bind to a member of a packed structure.
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
