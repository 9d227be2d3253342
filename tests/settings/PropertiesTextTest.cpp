// The text that a store takes over when it is loaded without the cursor.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "settings/Properties.h"
#include "tests/settings/TextForm.h"
#include "tests/support/HeapInUse.h"

namespace dovrel {
namespace {

using test::loaded;
using test::saved;

TEST(PropertiesText, UsesTheTextUp) {
    Properties store;
    std::string text = "//a\nINT:1\n";
    store.load(text, false);
    EXPECT_EQ(text, "");
    EXPECT_EQ(store.getInt("a"), 1);
}

TEST(PropertiesText, StoreCanBeChangedAndCopiedAndLoadedAgain) {
    auto store = std::make_unique<Properties>();
    std::string text = "//a\nINT:1\n//b\nSTR:a text that is long enough to lie in the heap\n//c\nBAR:41\n";
    store->load(text, false);
    store->replaceInt("a", 2);
    store->addString("d", "new");
    EXPECT_TRUE(store->remove("c"));
    const Properties copy = *store;
    text = "//e\nINT:5\n";
    store->load(text, false);
    EXPECT_EQ(saved(*store), "//e\nINT:5\n");
    store.reset();
    EXPECT_EQ(saved(copy),
              "//a\nINT:2\n//b\nSTR:a text that is long enough to lie in the heap\n//d\nSTR:new\n");
}

TEST(PropertiesText, StoreThatIsMovedOrAssigned_KeepsItsValues) {
    std::string text = "//b\nSTR:a text that is long enough to lie in the heap\n";
    Properties store;
    store.load(text, false);
    Properties moved = std::move(store);
    Properties assigned;
    assigned.addInt("old", 1);
    assigned = std::move(moved);
    Properties copied;
    std::string other = "//x\nSTR:another text that is long enough to lie in the heap\n";
    copied.load(other, false);
    copied = assigned;
    assigned.clear();
    EXPECT_EQ(copied.getString("b"), "a text that is long enough to lie in the heap");
    EXPECT_EQ(copied.size(), 1u);
}

// Loads a small store from a text of 32 MB and passes it to `use`. Returns how many more
// bytes the heap holds afterwards.
template <class Use>
size_t heapKeptAfter(const Use& use) {
    constexpr size_t kLarge = 32'000'000;
    const size_t before = test::heapInUse();
    {
        std::string text = std::string(kLarge, '.') + "\n//a\nINT:1\n//b\nSTR:text\n";
        auto store = std::make_unique<Properties>();
        store->load(text, false);
        EXPECT_GE(test::heapInUse(), before + kLarge) << "the loaded store keeps its text";
        use(std::move(store));
    }
    const size_t after = test::heapInUse();
    return after > before ? after - before : 0;
}

TEST(PropertiesText, CopyOfTheStore_DoesNotKeepTheTextAlive) {
    Properties copy;
    EXPECT_LT(heapKeptAfter([&](std::unique_ptr<Properties> store) { copy = Properties(*store); }), 10'000u);
    EXPECT_EQ(saved(copy), "//a\nINT:1\n//b\nSTR:text\n");
    copy.clear();
    EXPECT_LT(heapKeptAfter([&](std::unique_ptr<Properties> store) { copy = *store; }), 10'000u);
    EXPECT_EQ(saved(copy), "//a\nINT:1\n//b\nSTR:text\n");
}

TEST(PropertiesText, StoreAssignedToAnother_ReleasesTheTextOfThatOne) {
    Properties other;
    other.addInt("z", 26);
    EXPECT_LT(heapKeptAfter([&](std::unique_ptr<Properties> store) {
                  *store = other;
                  other = std::move(*store);
              }),
              10'000u);
    EXPECT_EQ(saved(other), "//z\nINT:26\n");
}

TEST(PropertiesText, StoreAssignedToItself_KeepsItsValues) {
    Properties store = loaded("//a\nINT:1\n//b\nSTR:a text that is long enough to lie in the heap\n");
    const Properties& same = store;
    store = same;
    EXPECT_EQ(saved(store), "//a\nINT:1\n//b\nSTR:a text that is long enough to lie in the heap\n");
}

TEST(PropertiesText, ValuesOfTheStore_DoNotKeepTheTextAlive) {
    std::string text;
    std::unique_ptr<CPPByteArray> bytes;
    EXPECT_LT(heapKeptAfter([&](std::unique_ptr<Properties> store) {
                  text = store->getString("b");
                  bytes = store->getBinary("b");
              }),
              10'000u);
    EXPECT_EQ(text, "text");
    EXPECT_EQ(bytes->compare("text", 4), 0);
}

}  // namespace
}  // namespace dovrel
