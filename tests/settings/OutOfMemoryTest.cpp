// Makes each allocation fail, alone and together with all later ones. The settings must then either
// throw, or succeed anyway, and must keep their previous content. The sanitizers check that nothing leaks
// and that nothing is freed twice.
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "client/exceptions/CPPException.h"
#include "settings/ConfigFileSystem.h"
#include "settings/LogFileReader.h"
#include "settings/LogFileWriter.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/Properties.h"
#include "tests/settings/TextForm.h"
#include "tests/support/HeapWatch.h"
#include "tests/support/InstalledTexts.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel {
namespace {

using test::refuseEachRequest;
using test::saved;

const std::string kLong = "a text that is long enough to lie in the heap";
const std::string kText = "//a\nINT:1\n//b\nSTR:" + kLong + "\n//c\nBAR:4142\n";

// Returns false if the work threw std::bad_alloc or an exception of the library.
template <class Work>
bool isDone(const Work& work) {
    try {
        work();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (CPPException* caught) {
        const std::unique_ptr<CPPException> failure(caught);
        return false;
    }
}

// Expects `change` to turn a store with the entries of kText into one with those
// of `changed`, or not to change it.
template <class Change>
void expectChangedOrAsItWas(const std::string& changed, const Change& change) {
    const Properties original = test::loaded(kText);
    Properties store;
    bool done = false;
    store = original;
    refuseEachRequest([&] { done = isDone([&] { change(store); }); },
                      [&](bool refused) {
                          EXPECT_TRUE(done || refused);
                          EXPECT_EQ(saved(store), done ? changed : kText);
                          store = original;
                      });
}

TEST(SettingsOutOfMemory, AddReplaceAndRemove_ChangeTheStoreOrLeaveIt) {
    expectChangedOrAsItWas(kText + "//d\nINT:4\n", [](Properties& store) { store.addInt("d", 4); });
    expectChangedOrAsItWas(kText + "//d\nSTR:" + kLong + "\n",
                           [](Properties& store) { store.addString("d", kLong); });
    expectChangedOrAsItWas(kText + "//d\nBAR:61\n",
                           [](Properties& store) { store.addBinary("d", kLong.data(), 1); });
    expectChangedOrAsItWas("//a\nINT:1\n//b\nINT:2\n//c\nBAR:4142\n",
                           [](Properties& store) { store.replaceInt("b", 2); });
    expectChangedOrAsItWas("//a\nINT:1\n//b\nBAR:6120\n//c\nBAR:4142\n",
                           [](Properties& store) { store.replaceBinary("b", kLong.data(), 2); });
}

TEST(SettingsOutOfMemory, Load_ReturnsEveryEntryOrThrows) {
    for (const bool throughCursor : {true, false}) {
        Properties store;
        std::string text = kText;
        bool done = false;
        refuseEachRequest([&] { done = isDone([&] { store.load(text, throughCursor); }); },
                          [&](bool refused) {
                              EXPECT_TRUE(done || refused);
                              if (done) {
                                  EXPECT_EQ(saved(store), kText);
                              }
                              // Even if it was loaded only in part, the store can be used.
                              store.addInt("z", 26);
                              EXPECT_EQ(store.getInt("z"), 26);
                              text = kText;
                          });
    }
}

TEST(SettingsOutOfMemory, Save_WritesEveryEntryOrThrows) {
    const Properties store = test::loaded(kText);
    std::string text;
    bool done = false;
    refuseEachRequest(
        [&] {
            std::string().swap(text);  // an assignment would keep the capacity
            done = isDone([&] { store.save(text); });
        },
        [&](bool refused) {
            EXPECT_TRUE(done || refused);
            if (done) {
                EXPECT_EQ(text, kText);
            }
        });
}

TEST(SettingsOutOfMemory, Getters_GiveTheWholeValueOrThrow) {
    const Properties store = test::loaded(kText);
    std::string text;
    std::unique_ptr<CPPByteArray> bytes;
    CPPByteArray found;
    bool done = false;
    refuseEachRequest(
        [&] {
            found = CPPByteArray();
            std::string().swap(text);
            done = isDone([&] {
                text = store.getString("b");
                bytes = store.getBinary("b");
                store.findBinary("b", found);
            });
        },
        [&](bool refused) {
            EXPECT_TRUE(done || refused);
            if (!done) return;
            EXPECT_EQ(text, kLong);
            EXPECT_EQ(bytes->compare(kLong.data(), static_cast<uint32_t>(kLong.size())), 0);
            EXPECT_EQ(found.compare(*bytes), 0);
        });
}

TEST(SettingsOutOfMemory, MissingKey_IsAFailureInAnyCase) {
    const Properties store;
    bool done = true;
    refuseEachRequest([&] { done = isDone([&] { store.getString(kLong); }); },
                      [&](bool) { EXPECT_FALSE(done); });
}

TEST(SettingsOutOfMemory, ReadingAFile_ReturnsEverySectionOrThrows) {
    const test::TemporaryFolder folder;
    const std::string content = "//version\nINT:1\n" + kText + "//S\nINT:2\n" + kText;
    ASSERT_TRUE(ConfigFileSystem::writeEnciphered(folder.path("file"), content));
    std::vector<Properties> sections;
    bool done = false;
    refuseEachRequest(
        [&] {
            done = isDone([&] {
                sections =
                    ConfigFileSystem::readSections(ConfigFileSystem::readText(folder.path("file")), "S");
            });
        },
        [&](bool refused) {
            EXPECT_TRUE(done || refused);
            if (!done) return;
            ASSERT_EQ(sections.size(), 2u);
            EXPECT_EQ(saved(sections[0]), kText);
            EXPECT_EQ(saved(sections[1]), "//S\nINT:2\n" + kText);
        });
}

TEST(SettingsOutOfMemory, WritingAFile_ReplacesItOrLeavesIt) {
    const test::TemporaryFolder folder;
    const Properties store = test::loaded(kText);
    folder.write("file", "old");
    bool written = false;
    refuseEachRequest(
        [&] {
            written = false;
            isDone([&] { written = ConfigFileSystem::writeProperties(folder.path("file"), store); });
        },
        [&](bool refused) {
            EXPECT_TRUE(written || refused);
            const std::string content = folder.read("file");
            // If memory is missing only for opening the file to all users, the
            // content is complete but the call fails.
            EXPECT_TRUE(content == kText || (content == "old" && !written)) << content;
            folder.write("file", "old");
        });
}

TEST(SettingsOutOfMemory, LogFile_IsWrittenAndReadOrThrows) {
    std::string log;
    Properties store;
    bool done = false;
    refuseEachRequest(
        [&] {
            std::string().swap(log);
            done = isDone([&] {
                LogFileWriter writer(log);
                writer.writeTitle("A title of some length, for the heap");
                writer.writeString("text", kLong + "\n" + kLong);
                LogFileReader::load(log, "A title of some length, for the heap", store, true);
            });
        },
        [&](bool refused) {
            EXPECT_TRUE(done || refused);
            if (done) {
                EXPECT_EQ(LogFileReader::getText(store, "text"), kLong + "\n" + kLong);
            }
        });
}

TEST(SettingsOutOfMemory, Initialize_LoadsTheTextsOrKeepsThoseBefore) {
    const test::InstalledTexts installation;
    installation.install(
        "//LANGUAGE\nSTR:English\n//K\nSTR:an English text of some length, for the heap\n"
        "//LANGUAGE\nSTR:German\n//K\nSTR:ein deutscher Text mit einer gewissen L\xA7nge\n");
    MultiLanguageSupport::initialize("English");
    const std::string english = MultiLanguageSupport::getText("K");
    bool done = false;
    refuseEachRequest([&] { done = isDone([] { MultiLanguageSupport::initialize("German"); }); },
                      [&](bool refused) {
                          EXPECT_TRUE(done || refused);
                          EXPECT_TRUE(MultiLanguageSupport::isLoaded());
                          const std::string text = MultiLanguageSupport::getText("K");
                          EXPECT_EQ(text == english, !done) << text;
                          MultiLanguageSupport::initialize("English");
                      });
}

}  // namespace
}  // namespace dovrel
