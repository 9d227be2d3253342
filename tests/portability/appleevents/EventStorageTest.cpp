#include "portability/appleevents/EventStorage.h"

#include <CoreServices/MacErrors.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/portability/support/Images.h"

using namespace portability;

namespace {

OSErr put(EventStorage& event, AEKeyword keyword, const std::string& text) {
    return event.put(ItemKind::parameter, keyword, typeChar, text.data(), text.size());
}

std::string text(const EventStorage& event, AEKeyword keyword) {
    EventValue value;
    if (!event.find(ItemKind::parameter, keyword, value)) return "(none)";
    return std::string(reinterpret_cast<const char*>(value.data), value.size);
}

// Returns an attribute of four bytes, or 0 if there is none.
UInt32 number(const EventStorage& event, AEKeyword attribute) {
    EventValue value;
    UInt32 found = 0;
    if (!event.find(ItemKind::attribute, attribute, value) || value.size != sizeof found) return 0;
    std::memcpy(&found, value.data, sizeof found);
    return found;
}

void noteRead(const EventStorage& event, AEKeyword parameter) {
    EventValue value;
    ASSERT_TRUE(event.find(ItemKind::parameter, parameter, value));
    event.noteRead(value);
}

}  // namespace

TEST(EventStorage, Put_TooLarge_ChangesNothing) {
    EventStorage event;
    ASSERT_EQ(put(event, 'aaaa', "there"), noErr);
    const char byte = 'x';
    EXPECT_EQ(event.put(ItemKind::parameter, 'aaaa', typeChar, &byte, kLargestMessage + 1), memFullErr);
    EXPECT_EQ(event.put(ItemKind::parameter, 'aaaa', typeChar, &byte, SIZE_MAX), memFullErr);
    EXPECT_EQ(text(event, 'aaaa'), "there");
}

TEST(EventStorage, Put_TooMany_ChangesNothing) {
    EventStorage event;
    for (AEKeyword i = 0; i < kMostItems; ++i)
        ASSERT_EQ(put(event, i, "x"), noErr);
    EXPECT_EQ(put(event, kMostItems, "one more"), memFullErr);
    EXPECT_EQ(put(event, 5, "in place of another"), noErr);
    EXPECT_EQ(text(event, 5), "in place of another");
    EXPECT_TRUE(ItemIndex().read(event.image().data(), event.image().size()));
}

TEST(EventStorage, Put_IntoAView_LeavesTheViewedBytes) {
    const Bytes image = itemBytes('aaaa', "old");
    EventStorage event(image.data(), image.size(), nullptr);
    ASSERT_EQ(put(event, 'aaaa', "new"), noErr);
    EXPECT_EQ(text(event, 'aaaa'), "new");
    EXPECT_EQ(image, itemBytes('aaaa', "old"));
}

TEST(EventStorage, Image_IsTheItems) {
    EventStorage event;
    put(event, 'aaaa', "one");
    put(event, 'bbbb', "two");
    const Bytes expected = itemBytes('aaaa', "one") + itemBytes('bbbb', "two");
    EXPECT_EQ(Bytes(event.image().data(), event.image().data() + event.image().size()), expected);
}

TEST(EventStorage, AddNumbers_MakesTheImageThatPutMakes) {
    const UInt32 numbers[] = {7, 0xFFFFFFFF};
    EventStorage expected;
    expected.put(ItemKind::attribute, 'aaaa', typeType, &numbers[0], sizeof numbers[0]);
    expected.put(ItemKind::attribute, 'bbbb', typeSInt32, &numbers[1], sizeof numbers[1]);
    put(expected, 'cccc', "three");
    EventStorage event;
    ASSERT_EQ(event.addNumbers({{'aaaa', typeType, 7}, {'bbbb', typeSInt32, 0xFFFFFFFF}}), noErr);
    EXPECT_EQ(event.imageNumber('bbbb'), 0xFFFFFFFF);
    put(event, 'cccc', "three");
    const auto bytes = [](const MessageMemory& image) {
        return Bytes(image.data(), image.data() + image.size());
    };
    EXPECT_EQ(bytes(event.image()), bytes(expected.image()));
    EXPECT_EQ(number(event, 'aaaa'), 7u);
    EXPECT_EQ(text(event, 'cccc'), "three");
}

TEST(EventStorage, ImageNumber_OfAnotherSizeOrNone_Is0) {
    EventStorage event;
    event.put(ItemKind::attribute, 'aaaa', typeChar, "text!", 5);
    EXPECT_EQ(event.imageNumber('aaaa'), 0u);
    EXPECT_EQ(event.imageNumber('bbbb'), 0u);
}

TEST(EventStorage, CopyOf_IsIndependent) {
    Bytes image = itemBytes('aaaa', std::string(30000, 'x'));
    const std::unique_ptr<EventStorage> copy = EventStorage::makeCopy(image.data(), image.size());
    std::fill(image.begin(), image.end(), 0);
    EXPECT_TRUE(text(*copy, 'aaaa') == std::string(30000, 'x'));
}

TEST(EventStorage, Delivery_IsSeenAsAttributes) {
    EventStorage event;
    EventValue value;
    EXPECT_FALSE(event.find(ItemKind::attribute, keySenderPIDAttr, value)) << "it was not delivered";
    event.setDelivery({1234, kAELocalProcess, kAEWaitReply | kAECanInteract, 600});
    EXPECT_EQ(number(event, keySenderPIDAttr), 1234u);
    EXPECT_EQ(number(event, keyAddressAttr), 1234u);
    EXPECT_EQ(number(event, keyTimeoutAttr), 600u);
    EXPECT_EQ(number(event, keyInteractLevelAttr), static_cast<UInt32>(kAECanInteract));
    ASSERT_TRUE(event.find(ItemKind::attribute, keyReplyRequestedAttr, value));
    EXPECT_EQ(value.size, 1u);
    EXPECT_EQ(value.data[0], 1);
}

TEST(EventStorage, MissedKeyword_IsTheFirstUnreadParameter) {
    EventStorage event;
    put(event, 'aaaa', "one");
    put(event, 'bbbb', "two");
    EXPECT_EQ(number(event, keyMissedKeywordAttr), UInt32{'aaaa'});
    noteRead(event, 'aaaa');
    EXPECT_EQ(number(event, keyMissedKeywordAttr), UInt32{'bbbb'});
    noteRead(event, 'bbbb');
    EventValue value;
    EXPECT_FALSE(event.find(ItemKind::attribute, keyMissedKeywordAttr, value));
}
