// Properties of every store and its text, checked with random stores.
#include <gtest/gtest.h>

#include <string>

#include "settings/ConfigFileSystem.h"
#include "settings/LineGrammar.h"
#include "settings/LogFileReader.h"
#include "settings/LogFileWriter.h"
#include "settings/Properties.h"
#include "tests/settings/RandomStore.h"
#include "tests/settings/TextForm.h"

namespace dovrel {
namespace {

using test::RandomStore;
using test::saved;

constexpr uint32_t kRounds = 500;

// A store's text contains all keys, types and values, so equal texts mean equal stores.
void expectEqual(const Properties& found, const Properties& expected, uint32_t round) {
    EXPECT_EQ(saved(found), saved(expected)) << "seed " << RandomStore::kSeed << ", round " << round;
}

TEST(PropertiesRoundTrip, SaveThenLoad_ReturnsTheSameStoreInBothModes) {
    for (uint32_t round = 0; round < kRounds; ++round) {
        const Properties store = RandomStore(round).store();
        std::string text = saved(store);
        Properties throughCursor;
        throughCursor.load(text, true);
        expectEqual(throughCursor, store, round);
        Properties usedUp;
        usedUp.load(text, false);
        expectEqual(usedUp, store, round);
    }
}

TEST(PropertiesRoundTrip, SaveThenLoad_KeepsEveryValueInEveryReading) {
    for (uint32_t round = 0; round < kRounds; ++round) {
        SCOPED_TRACE("seed " + std::to_string(RandomStore::kSeed) + ", round " + std::to_string(round));
        const Properties store = RandomStore(round).store();
        std::string text = saved(store);
        Properties again;
        again.load(text, round % 2 == 0);
        ASSERT_EQ(again.size(), store.size());
        for (int32_t i = 0; i < static_cast<int32_t>(store.size()); ++i) {
            const std::string key = store.getKeyAt(i);
            ASSERT_EQ(again.getKeyAt(i), key);
            EXPECT_EQ(again.getInt(key), store.getInt(key));
            EXPECT_EQ(again.getString(key), store.getString(key));
            EXPECT_EQ(again.getBinary(key)->compare(*store.getBinary(key)), 0);
        }
    }
}

TEST(PropertiesRoundTrip, BlanksTabsAndNoiseBetweenTheLines_ChangeNothing) {
    for (uint32_t round = 0; round < kRounds; ++round) {
        RandomStore random(round);
        const Properties store = random.store();
        std::string noisy = "noise\n";
        for (const char c : saved(store)) {
            if (c == kLineFeed) noisy += random.below(2) != 0 ? " \t" : "";
            noisy += c;
            if (c == kLineFeed) noisy += random.below(2) != 0 ? "\t\t\n " : "";
        }
        Properties again;
        again.load(noisy, true);
        expectEqual(again, store, round);
        Properties usedUp;
        usedUp.load(noisy, false);
        expectEqual(usedUp, store, round);
    }
}

TEST(PropertiesRoundTrip, LogForm_ReturnsTheSameEntriesAndTextsWithLineFeeds) {
    for (uint32_t round = 0; round < kRounds; ++round) {
        SCOPED_TRACE("seed " + std::to_string(RandomStore::kSeed) + ", round " + std::to_string(round));
        RandomStore random(round);
        const std::string bytes = random.bytes();
        const std::string text = random.lineText() + "\n\n" + random.lineText() + ".";
        std::string log;
        LogFileWriter writer(log);
        writer.writeTitle("log");
        writer.writeInt("number", static_cast<int32_t>(round));
        writer.writeString("text", text);
        writer.writeBinary("bytes", bytes.data(), static_cast<uint32_t>(bytes.size()));

        Properties store;
        LogFileReader::load(log, "log", store, true);
        EXPECT_EQ(store.size(), 3u);
        EXPECT_EQ(store.getInt("number"), static_cast<int32_t>(round));
        EXPECT_EQ(LogFileReader::getText(store, "text"), text);
        EXPECT_EQ(store.getString("bytes"), bytes);
    }
}

TEST(PropertiesRoundTrip, SectionsJoinedThenRead_GiveTheStores) {
    for (uint32_t round = 0; round < kRounds; ++round) {
        RandomStore random(round);
        std::string text;
        std::vector<Properties> stores;
        for (uint32_t i = random.below(5); i != 0; --i) {
            Properties store = random.store();
            store.remove("SECTION");
            text += "//SECTION\nINT:1\n" + saved(store);
            store.addInt("SECTION", 1);
            stores.push_back(store);
        }
        const std::vector<Properties> sections = ConfigFileSystem::readSections(text, "SECTION");
        ASSERT_EQ(sections.size(), stores.size()) << "seed " << RandomStore::kSeed << ", round " << round;
        for (size_t i = 0; i < stores.size(); ++i)
            expectEqual(sections[i], stores[i], round);
    }
}

TEST(PropertiesRoundTrip, TextWithRandomDamage_IsReadWithoutAFailure) {
    for (uint32_t round = 0; round < kRounds; ++round) {
        RandomStore random(round);
        std::string text = saved(random.store());
        for (uint32_t i = random.below(8); i != 0 && !text.empty(); --i) {
            const uint32_t at = random.below(static_cast<uint32_t>(text.size()));
            if (random.below(2) != 0) {
                text[at] = static_cast<char>(random.below(256));
            } else {
                text.erase(at, random.below(5));
            }
        }
        Properties store;
        store.load(text, true);
        // Whatever was loaded is a valid store: its own text must load to the same store.
        std::string again = saved(store);
        Properties second;
        second.load(again, true);
        expectEqual(second, store, round);
        Properties usedUp;
        usedUp.load(text, false);
        expectEqual(usedUp, store, round);
    }
}

}  // namespace
}  // namespace dovrel
