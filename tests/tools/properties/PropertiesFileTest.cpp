#include "tools/properties/PropertiesFile.h"

#include <gtest/gtest.h>

#include "settings/EncipheredText.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/Subcommand.h"

namespace dovrel::tools {
namespace {

class PropertiesFileTest : public testing::Test {
  protected:
    std::string failureOf(const std::string& content) {
        folder_.write("file", content);
        try {
            PropertiesFile(folder_.path("file")).replaceText("new");
        } catch (const ToolFailure& failure) {
            return failure.what();
        }
        return "none";
    }

    const test::TemporaryFolder folder_;
};

TEST_F(PropertiesFileTest, EncipheredFile_StaysEnciphered) {
    folder_.write("file", encipher("//a\nINT:1\n"));
    PropertiesFile file(folder_.path("file"));
    EXPECT_TRUE(file.isEnciphered());
    EXPECT_EQ(file.text(), "//a\nINT:1\n");
    file.replaceText("//a\nINT:2\n");
    EXPECT_EQ(decipher(folder_.read("file")), "//a\nINT:2\n");
}

TEST_F(PropertiesFileTest, PlainFile_StaysPlain) {
    EXPECT_EQ(failureOf("old"), "none");
    EXPECT_EQ(folder_.read("file"), "new");
}

TEST_F(PropertiesFileTest, DamagedEncipheredFile_IsAFailure) {
    EXPECT_EQ(failureOf("ENC!"), "cannot decipher " + folder_.path("file") +
                                     ": it begins with ENC, but what follows is not the base64 text of an "
                                     "enciphered file");
}

TEST_F(PropertiesFileTest, FileWithANulByte_IsLeft) {
    const std::string content("//a\nINT:1\n\0//b\nINT:2\n", 21);
    EXPECT_NE(failureOf(content), "none");
    EXPECT_EQ(folder_.read("file"), content);
}

TEST_F(PropertiesFileTest, MissingFile_IsAFailureOrCreated) {
    const std::string path = folder_.path("missing");
    EXPECT_THROW(PropertiesFile{path}, ToolFailure);
    PropertiesFile file = PropertiesFile::openOrCreate(path);
    EXPECT_EQ(file.text(), "");
    file.replaceText("new");
    EXPECT_EQ(folder_.read("missing"), "new");
}

TEST_F(PropertiesFileTest, FileThatCannotBeWritten_IsAFailureThatNamesIt) {
    PropertiesFile file = PropertiesFile::openOrCreate(folder_.path("no/such/folder"));
    EXPECT_THROW(file.replaceText("new"), ToolFailure);
}

}  // namespace
}  // namespace dovrel::tools
