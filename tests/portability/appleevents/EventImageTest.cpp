#include "portability/appleevents/EventImage.h"

#include <gtest/gtest.h>

#include "portability/appleevents/ItemIndex.h"
#include "tests/portability/support/Images.h"

using namespace portability;

namespace {

bool isWhole(const Bytes& image) {
    return ItemIndex().read(image.data(), image.size());
}

std::string find(const Bytes& image, uint32_t keyword, ItemKind kind = ItemKind::parameter) {
    ImageItem item;
    if (!ImageWalker(image.data(), image.size()).find(kind, keyword, item)) return "(none)";
    return std::string(reinterpret_cast<const char*>(item.data), item.header.size);
}

}  // namespace

TEST(EventImage, Empty_IsWhole) {
    EXPECT_TRUE(isWhole({}));
    EXPECT_EQ(find({}, 'aaaa'), "(none)");
}

TEST(EventImage, Items_AreFoundByKindAndKeyword) {
    const Bytes image =
        itemBytes('aaaa', "attribute", 1) + itemBytes('aaaa', "parameter") + itemBytes('bbbb', "");
    EXPECT_TRUE(isWhole(image));
    EXPECT_EQ(find(image, 'aaaa', ItemKind::attribute), "attribute");
    EXPECT_EQ(find(image, 'aaaa'), "parameter");
    EXPECT_EQ(find(image, 'bbbb'), "");
    EXPECT_EQ(find(image, 'bbbb', ItemKind::attribute), "(none)");
}

TEST(EventImage, SameKeywordTwice_FirstIsFound) {
    EXPECT_EQ(find(itemBytes('aaaa', "one") + itemBytes('aaaa', "two"), 'aaaa'), "one");
}

TEST(EventImage, CutAnywhereInsideAnItem_IsDamaged) {
    const Bytes first = itemBytes('aaaa', "twelve bytes");
    const Bytes image = first + itemBytes('bbbb', "more");
    for (size_t size = 0; size <= image.size(); ++size) {
        const bool atBoundary = size == 0 || size == first.size() || size == image.size();
        EXPECT_EQ(ItemIndex().read(image.data(), size), atBoundary) << size;
    }
}

TEST(EventImage, SizeBehindTheEnd_IsDamagedAndNothingIsFound) {
    for (const int64_t size :
         {int64_t{17}, int64_t{1} << 31, int64_t{0xFFFFFFF0}, int64_t{0xFFFFFFF9}, int64_t{0xFFFFFFFF}}) {
        const Bytes image = itemBytes('aaaa', "sixteen bytes ok", 2, size);
        EXPECT_FALSE(isWhole(image)) << size;
        EXPECT_EQ(find(image, 'aaaa'), "(none)") << size;
    }
}

TEST(EventImage, FillingBehindTheEnd_IsDamaged) {
    Bytes image = itemBytes('aaaa', "abc");
    image.pop_back();
    EXPECT_FALSE(isWhole(image));
}

TEST(EventImage, UnknownKind_IsDamaged) {
    for (const uint32_t kind : {0u, 3u, 0xFFFFFFFFu})
        EXPECT_FALSE(isWhole(itemBytes('aaaa', "abc", kind))) << kind;
}

TEST(EventImage, DamageBehindAnItem_LeavesItToBeFound) {
    const Bytes image = itemBytes('aaaa', "fine") + itemBytes('bbbb', "bad", 9) + itemBytes('cccc', "behind");
    EXPECT_FALSE(isWhole(image));
    EXPECT_EQ(find(image, 'aaaa'), "fine");
    EXPECT_EQ(find(image, 'cccc'), "(none)");
}

TEST(EventImage, MoreItemsThanAllowed_IsDamaged) {
    Bytes image;
    for (uint32_t i = 0; i < kMostItems; ++i)
        image = std::move(image) + itemBytes(i, "");
    EXPECT_TRUE(isWhole(image));
    EXPECT_FALSE(isWhole(image + itemBytes('last', "")));
}

TEST(EventImage, WriteItem_FillsUpWithZeroes) {
    Bytes written(itemSpace(3), 0xEE);
    const ItemHeader header{'aaaa', 'TEXT', 3, 2};
    writeItem(written.data(), header, "abc");
    EXPECT_EQ(written, itemBytes('aaaa', "abc"));
}

TEST(EventImage, ItemSpace_IsAMultipleOfEight) {
    EXPECT_EQ(itemSpace(0), 16u);
    EXPECT_EQ(itemSpace(1), 24u);
    EXPECT_EQ(itemSpace(8), 24u);
    EXPECT_EQ(itemSpace(9), 32u);
}
