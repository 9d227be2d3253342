// Tests the loader itself with a small bundle.
#include "macho/LoadedBundle.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "macho/imports/ImportTable.h"
#include "tests/macho/sample/Sample.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::macho {
namespace {

LoadedBundle& sample(const std::string& name = "Sample") {
    return LoadedBundle::load(std::string(MACHO_SAMPLES) + "/" + name, reviewedImports());
}

#define SAMPLE_FUNCTION(bundle, name) reinterpret_cast<decltype(&name)>((bundle).function(#name))

TEST(LoadedBundle, Initialisers_RunBeforeAnythingElse) {
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_Initialisers)(), 0);
}

TEST(LoadedBundle, ExceptionsInsideTheBundle_ReachTheirHandlersThroughEveryKindOfFrame) {
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_Exceptions)(), 0);
}

TEST(LoadedBundle, ExceptionsOfTheCppLibrary_AreCaughtByTheirClass) {
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_LibraryExceptions)(), 0);
}

TEST(LoadedBundle, AnExceptionOfThisProgramsCppLibrary_PassesThroughTheBundle) {
    const auto catchAll = SAMPLE_FUNCTION(sample(), Sample_CatchAll);
    EXPECT_EQ(catchAll([] {}), 0);
    EXPECT_EQ(catchAll([] { throw std::runtime_error("of the other C++ library"); }), 1);
    EXPECT_THROW(throw std::runtime_error("still caught here"), std::runtime_error);
}

TEST(LoadedBundle, AMutex_WorksAsTheCompilerInitialisedIt) {
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_Mutex)(), 0);
}

TEST(LoadedBundle, ErrorNumbersAndOpenFlags_AreThoseOfMacOS) {
    const test::TemporaryFolder folder;
    std::filesystem::create_symlink("locked", folder.path() + "/link");
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_ErrorNumbers)(folder.path().c_str()), 0);
}

TEST(LoadedBundle, AFilesStatus_HasTheLayoutOfMacOS) {
    const std::string path = std::string(MACHO_SAMPLES) + "/Sample";
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_FileSize)(path.c_str()),
              static_cast<int64_t>(std::filesystem::file_size(path)));
}

TEST(LoadedBundle, ObjectiveC_MessagesClassesStringsAndExceptionsWork) {
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_ObjectiveC)(), 0);
}

TEST(LoadedBundle, ClassesThatTheProcessHas_AreNotReplaced) {
    sample();
    try {
        sample();
        FAIL() << "it was loaded";
    } catch (const FormatError& error) {
        EXPECT_NE(std::string(error.what()).find("the process has a class Dovrel"), std::string::npos);
    }
}

constexpr uint32_t kFrom1904To1970 = 2082844800;

uint32_t modificationSeconds(const std::string& path) {
    struct stat status = {};
    stat(path.c_str(), &status);
    return static_cast<uint32_t>(status.st_mtime) + kFrom1904To1970;
}

TEST(LoadedBundle, APackedRecord_IsReadWhereThePlatformWroteIt) {
    const std::string path = std::string(MACHO_SAMPLES) + "/Sample";
    EXPECT_EQ(SAMPLE_FUNCTION(sample(), Sample_ModificationSeconds)(path.c_str()), modificationSeconds(path));
}

TEST(LoadedBundle, ARecordOfHeadersWithAnotherPacking_IsReadWrongly) {
    const std::string path = std::string(MACHO_SAMPLES) + "/Sample";
    EXPECT_NE(SAMPLE_FUNCTION(sample("UnpackedSample"), Sample_ModificationSeconds)(path.c_str()),
              modificationSeconds(path))
        << "the tests cannot tell whether records are packed";
}

TEST(LoadedBundle, ImportsThatHaveNotBeenReviewed_FailTheLoadWithAllOfThem) {
    ImportTable few;
    few.add("/usr/lib/libSystem.B.dylib", "_malloc", nullptr);
    try {
        LoadedBundle::load(std::string(MACHO_SAMPLES) + "/Sample", few);
        FAIL() << "it was loaded";
    } catch (const FormatError& error) {
        const std::string message = error.what();
        EXPECT_NE(message.find("\n  _flock from /usr/lib/libSystem.B.dylib\n"), std::string::npos) << message;
        EXPECT_NE(message.find("\n  ___cxa_throw from /usr/lib/libc++.1.dylib\n"), std::string::npos)
            << message;
        EXPECT_EQ(message.find("_malloc "), std::string::npos) << message;
    }
}

TEST(LoadedBundle, AFunctionThatIsNotExported_IsNotThere) {
    EXPECT_EQ(sample().function("fail"), nullptr);
}

}  // namespace
}  // namespace dovrel::macho
