// Checks that the end-to-end tests of this folder run the executable that ships, and nothing else.
#include "tests/macho/MachOLibraryImage.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/mman.h>

#include <csignal>
#include <cstring>
#include <fstream>
#include <set>

#include "macho/format/ExportTrie.h"
#include "macho/format/MachOFile.h"
#include "tests/support/PosLibrary.h"
#include "tests/support/TestRoot.h"

namespace dovrel::test {
namespace {

constexpr char kExecutable[] = DOVREL_BUNDLE "/Contents/MacOS/Dovrel";

std::set<std::string> listedFunctions() {
    std::set<std::string> functions;
    std::ifstream list(DOVREL_EXPORT_LIST);
    for (std::string line; std::getline(list, line);)
        functions.insert(line);
    return functions;
}

class MachOLibraryImage : public testing::Test {
  protected:
    // Returns the code in memory.
    const uint8_t* text() const { return bundle_.image().at(textSection().address, textSize()); }
    size_t textSize() const { return static_cast<size_t>(textSection().size); }
    const macho::Section& textSection() const { return *shipped_.section("__TEXT", "__text"); }

    const TestRoot root_;
    const PosLibrary library_{root_.library()};
    const macho::LoadedBundle& bundle_ = loadedExecutable(root_.library() + "/Contents/MacOS/Dovrel");
    const macho::MachOFile shipped_ = macho::MachOFile::read(kExecutable);
};

TEST_F(MachOLibraryImage, ItsFunctions_AreTheListedOnesAndAreInItsCode) {
    std::set<std::string> exported;
    for (const auto& symbol : macho::exportedSymbols(shipped_.exports()))
        exported.insert(symbol.first.substr(1));
    EXPECT_EQ(exported, listedFunctions());
    for (const std::string& function : exported) {
        const auto* const address = static_cast<const uint8_t*>(bundle_.function(function));
        EXPECT_TRUE(address >= text() && address < text() + textSize()) << function;
    }
    EXPECT_EQ(reinterpret_cast<void*>(library_.InitializePOS), bundle_.function("InitializePOS"));
}

TEST_F(MachOLibraryImage, ItsCode_IsByteForByteThatOfTheShippedSlice) {
    const macho::Segment& segment = shipped_.segments().front();
    ASSERT_EQ(segment.name, "__TEXT");
    const std::vector<uint8_t> shipped =
        shipped_.bytes(segment).part(textSection().address - segment.address, textSize()).all();
    EXPECT_EQ(std::memcmp(text(), shipped.data(), shipped.size()), 0);
}

int countDovrel(struct dl_phdr_info* image, size_t, void* count) {
    if (std::strstr(image->dlpi_name, "Dovrel") != nullptr) ++*static_cast<int*>(count);
    return 0;
}

TEST_F(MachOLibraryImage, NoLibraryOfThisSystem_IsInItsPlace) {
    int count = 0;
    dl_iterate_phdr(&countDovrel, &count);
    EXPECT_EQ(count, 0);
    for (const std::string& function : listedFunctions())
        EXPECT_EQ(dlsym(RTLD_DEFAULT, function.c_str()), nullptr) << function;
}

TEST_F(MachOLibraryImage, WithoutTheRightToRunItsCode_NoFunctionRuns) {
    EXPECT_EXIT(
        {
            mprotect(bundle_.image().base(), bundle_.image().size(), PROT_READ | PROT_WRITE);
            library_.posFreeDllHeapData(nullptr);
        },
        testing::KilledBySignal(SIGSEGV), "");
    EXPECT_EQ(library_.posFreeDllHeapData(nullptr), POS_OK);
}

TEST_F(MachOLibraryImage, TheSameFileByAnotherPath_IsLoadedOnce) {
    EXPECT_EQ(&loadedExecutable(root_.library() + "/./Contents/MacOS/Dovrel"), &bundle_);
}

TEST_F(MachOLibraryImage, AFileThatIsNotThere_IsSaidSo) {
    try {
        loadedExecutable("/nonexistent/Dovrel");
        FAIL() << "it was loaded";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "there is no /nonexistent/Dovrel");
    }
}

}  // namespace
}  // namespace dovrel::test
