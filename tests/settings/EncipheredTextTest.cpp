#include "settings/EncipheredText.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/settings/RandomStore.h"

using namespace std::string_literals;

namespace dovrel {
namespace {

const std::string kText = "//a\nSTR:text\n//b\nINT:3\n";
const chaCha20::Nonce kNonce{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

// The nonce, then the text enciphered with the library's key from block 1 on, as computed by another
// implementation of the cipher.
const std::string kForm = "ENCAQIDBAUGBwgJCgsMZQhnHgyPBzfuupHFE6KObb6KSjpHcEw=";

TEST(EncipheredText, Encipher_GivenNonce_ReturnsTheKnownForm) {
    EXPECT_EQ(encipher(kText, kNonce), kForm);
}

TEST(EncipheredText, Decipher_KnownForm_ReturnsTheText) {
    EXPECT_EQ(decipher(kForm), kText);
}

TEST(EncipheredText, Decipher_FormBrokenIntoLines_ReturnsTheText) {
    EXPECT_EQ(decipher(kForm.substr(0, 20) + "\r\n" + kForm.substr(20) + "\n"), kText);
}

TEST(EncipheredText, Encipher_TwiceTheSameText_ReturnsTwoForms) {
    const std::string first = encipher(kText);
    const std::string second = encipher(kText);
    EXPECT_NE(first, second);
    EXPECT_EQ(decipher(first), kText);
    EXPECT_EQ(decipher(second), kText);
}

TEST(EncipheredText, Encipher_ShowsNothingOfTheText) {
    EXPECT_EQ(encipher(std::string(100, 'A')).find("QUFB"), std::string::npos);
}

TEST(EncipheredText, EncipherThenDecipher_AnyText_ReturnsTheText) {
    for (uint32_t round = 0; round < 300; ++round) {
        test::RandomStore random(round);
        const std::string text = random.bytes() + random.bytes();
        EXPECT_EQ(decipher(encipher(text)), text)
            << "seed " << test::RandomStore::kSeed << ", round " << round;
    }
}

TEST(EncipheredText, EncipherThenDecipher_TenMegabytes) {
    const std::string text(10'000'000, '/');
    EXPECT_EQ(decipher(encipher(text)), text);
}

TEST(EncipheredText, Decipher_EmptyText_IsJustTheNonce) {
    EXPECT_EQ(encipher("", kNonce), "ENCAQIDBAUGBwgJCgsM");
    EXPECT_EQ(decipher("ENCAQIDBAUGBwgJCgsM"), "");
}

TEST(EncipheredText, IsEnciphered_LooksAtTheFirstThreeCharacters) {
    EXPECT_TRUE(isEnciphered("ENC"));
    EXPECT_TRUE(isEnciphered("ENCx"));
    EXPECT_FALSE(isEnciphered("EN"));
    EXPECT_FALSE(isEnciphered("enc"));
    EXPECT_FALSE(isEnciphered(" ENC"));
    EXPECT_FALSE(isEnciphered(""));
}

TEST(EncipheredText, Decipher_WrongForm_IsNothing) {
    EXPECT_EQ(decipher(""), std::nullopt);
    EXPECT_EQ(decipher("ENC"), std::nullopt);
    EXPECT_EQ(decipher(kText), std::nullopt);
    EXPECT_EQ(decipher("ENC of letters"), std::nullopt);
    EXPECT_EQ(decipher("ENCAQIDBAUGBwgJCgs="), std::nullopt);
    EXPECT_EQ(decipher(kForm.substr(3)), std::nullopt);
    EXPECT_EQ(decipher(kForm + "\0"s), std::nullopt);
}

TEST(EncipheredText, Decipher_FormCutAnywhere_IsNothingOrTheBeginningOfTheText) {
    for (size_t length = 0; length < kForm.size(); ++length) {
        const std::optional<std::string> text = decipher(kForm.substr(0, length));
        if (text) {
            EXPECT_EQ(*text, kText.substr(0, text->size())) << length;
        }
    }
}

}  // namespace
}  // namespace dovrel
