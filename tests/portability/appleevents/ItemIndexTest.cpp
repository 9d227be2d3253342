#include "portability/appleevents/ItemIndex.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/portability/support/Images.h"

using namespace portability;

namespace {

std::string find(const ItemIndex& index, const Bytes& image, uint32_t keyword,
                 ItemKind kind = ItemKind::parameter) {
    ImageItem item;
    if (!index.find(image.data(), image.size(), kind, keyword, item)) return "(none)";
    return std::to_string(item.index) + ' ' +
           std::string(reinterpret_cast<const char*>(item.data), item.header.size);
}

// An image with the parameters 'p000', 'p001' and so on, whose data are their numbers.
Bytes manyItems(uint32_t count) {
    Bytes image;
    for (uint32_t i = 0; i < count; ++i)
        image = image + itemBytes('p000' + i, std::to_string(i));
    return image;
}

}  // namespace

TEST(ItemIndex, Items_AreFoundByKindAndKeyword) {
    const Bytes image = itemBytes('aaaa', "attribute", 1) + itemBytes('aaaa', "parameter");
    ItemIndex index;
    ASSERT_TRUE(index.read(image.data(), image.size()));
    EXPECT_EQ(find(index, image, 'aaaa', ItemKind::attribute), "0 attribute");
    EXPECT_EQ(find(index, image, 'aaaa'), "1 parameter");
    EXPECT_EQ(find(index, image, 'bbbb'), "(none)");
}

TEST(ItemIndex, ItemsAfterTheKeptOnes_AreFoundInTheImage) {
    for (const uint32_t count : {7u, 8u, 9u, 30u}) {
        const Bytes image = manyItems(count) + itemBytes('last', "end");
        ItemIndex index;
        ASSERT_TRUE(index.read(image.data(), image.size()));
        EXPECT_EQ(index.count(), count + 1);
        EXPECT_EQ(find(index, image, 'last'), std::to_string(count) + " end");
        EXPECT_EQ(find(index, image, 'none'), "(none)");
    }
}

TEST(ItemIndex, HeaderThatAnotherProcessChanges_StaysAsItWasChecked) {
    Bytes image = itemBytes('aaaa', "four") + itemBytes('bbbb', "more");
    ItemIndex index;
    ASSERT_TRUE(index.read(image.data(), image.size()));
    for (size_t i = 0; i < sizeof(ItemHeader); ++i)
        image[i] = 0xFF;
    EXPECT_EQ(find(index, image, 'aaaa'), "0 four");
    EXPECT_EQ(find(index, image, 'bbbb'), "1 more");
}

TEST(ItemIndex, HeaderThatAnotherProcessChangesAfterTheKeptOnes_IsCheckedAgain) {
    const Bytes start = manyItems(8);
    Bytes image = start + itemBytes('last', "end");
    ItemIndex index;
    ASSERT_TRUE(index.read(image.data(), image.size()));
    const uint32_t enormous = 0xFFFFFFF0;
    std::memcpy(image.data() + start.size() + offsetof(ItemHeader, size), &enormous, sizeof enormous);
    EXPECT_EQ(find(index, image, 'last'), "(none)");
}

TEST(ItemIndex, AddedAndReplacedItems_AreFound) {
    Bytes image;
    ItemIndex index;
    for (uint32_t i = 0; i < 10; ++i) {
        const Bytes added = itemBytes('p000' + i, "old");
        index.add({'p000' + i, 'TEXT', 3, 2}, image.size());
        image = image + added;
    }
    EXPECT_EQ(index.count(), 10u);
    EXPECT_EQ(find(index, image, 'p009'), "9 old");
    ImageItem item;
    ASSERT_TRUE(index.find(image.data(), image.size(), ItemKind::parameter, 'p003', item));
    index.replace(item, {'p003', 'TEXT', 2, 2});
    EXPECT_EQ(find(index, image, 'p003'), "3 ol");
}

TEST(ItemIndex, DamagedImage_IsNotWhole) {
    const Bytes image = manyItems(12) + itemBytes('bbbb', "bad", 9);
    ItemIndex index;
    EXPECT_FALSE(index.read(image.data(), image.size()));
    EXPECT_FALSE(ItemIndex().read(image.data(), 17));
    EXPECT_TRUE(ItemIndex().read(image.data(), 0));
}
