// The expected bytes are the test vectors of RFC 8439.
#include "settings/ChaCha20.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include "settings/LineGrammar.h"

namespace dovrel {
namespace {

chaCha20::Key makeCountingKey() {
    chaCha20::Key key{};
    std::iota(key.begin(), key.end(), uint8_t{0});
    return key;
}

std::string toText(const chaCha20::Block& block) {
    return std::string(block.begin(), block.end());
}

// Section 2.3.2.
TEST(ChaCha20, KeyStreamBlock_CountingKey_ReturnsThePublishedBlock) {
    const chaCha20::Nonce nonce{0, 0, 0, 9, 0, 0, 0, 0x4A, 0, 0, 0, 0};
    EXPECT_EQ(toText(chaCha20::keyStreamBlock(makeCountingKey(), 1, nonce)),
              decodeHexText("10f1e7e4d13b5915500fdd1fa32071c4c7d1f4c733c068030422aa9ac3d46c4e"
                            "d2826446079faa0914c2d705d98b02a2b5129cd1de164eb9cbd083e8a2503c4e"));
}

// Appendix A.1, test vectors 1 to 5.
TEST(ChaCha20, KeyStreamBlock_ZeroKeyAndNonce_ReturnsThePublishedBlocks) {
    EXPECT_EQ(toText(chaCha20::keyStreamBlock({}, 0, {})),
              decodeHexText("76b8e0ada0f13d90405d6ae55386bd28bdd219b8a08ded1aa836efcc8b770dc7"
                            "da41597c5157488d7724e03fb8d84a376a43b8f41518a11cc387b669b2ee6586"));
    EXPECT_EQ(toText(chaCha20::keyStreamBlock({}, 1, {})),
              decodeHexText("9f07e7be5551387a98ba977c732d080dcb0f29a048e3656912c6533e32ee7aed"
                            "29b721769ce64e43d57133b074d839d531ed1f28510afb45ace10a1f4b794d6f"));
}

TEST(ChaCha20, KeyStreamBlock_OneBitInKeyOrNonce_ReturnsThePublishedBlocks) {
    chaCha20::Key lastKeyBit{};
    lastKeyBit[31] = 1;
    EXPECT_EQ(toText(chaCha20::keyStreamBlock(lastKeyBit, 1, {})),
              decodeHexText("3aeb5224ecf849929b9d828db1ced4dd832025e8018b8160b82284f3c949aa5a"
                            "8eca00bbb4a73bdad192b5c42f73f2fd4e273644c8b36125a64addeb006c13a0"));
    chaCha20::Key secondKeyByte{};
    secondKeyByte[1] = 0xFF;
    EXPECT_EQ(toText(chaCha20::keyStreamBlock(secondKeyByte, 2, {})),
              decodeHexText("72d54dfbf12ec44b362692df94137f328fea8da73990265ec1bbbea1ae9af0ca"
                            "13b25aa26cb4a648cb9b9d1be65b2c0924a66c54d545ec1b7374f4872e99f096"));
    chaCha20::Nonce lastNonceByte{};
    lastNonceByte[11] = 2;
    EXPECT_EQ(toText(chaCha20::keyStreamBlock({}, 0, lastNonceByte)),
              decodeHexText("c2c64d378cd536374ae204b9ef933fcd1a8b2288b3dfa49672ab765b54ee27c7"
                            "8a970e0e955c14f3a88e741b97c286f75f8fc299e8148362fa198a39531bed6d"));
}

// Section 2.4.2.
TEST(ChaCha20, Apply_PublishedText_ReturnsThePublishedBytesAndBack) {
    const chaCha20::Nonce nonce{0, 0, 0, 0, 0, 0, 0, 0x4A, 0, 0, 0, 0};
    const std::string text =
        "Ladies and Gentlemen of the class of '99: If I could offer you only one tip for the future, "
        "sunscreen "
        "would be it.";
    const std::string bytes = decodeHexText(
        "6e2e359a2568f98041ba0728dd0d6981e97e7aec1d4360c20a27afccfd9fae0b"
        "f91b65c5524733ab8f593dabcd62b3571639d624e65152ab8f530c359f0861d8"
        "07ca0dbf500d6a6156a38e088a22b65e52bc514d16ccf806818ce91ab7793736"
        "5af90bbf74a35be6b40b8eedf2785e42874d");
    EXPECT_EQ(chaCha20::apply(makeCountingKey(), 1, nonce, text), bytes);
    EXPECT_EQ(chaCha20::apply(makeCountingKey(), 1, nonce, bytes), text);
}

TEST(ChaCha20, Apply_EmptyText_IsEmpty) {
    EXPECT_EQ(chaCha20::apply({}, 0, {}, ""), "");
}

TEST(ChaCha20, Apply_TextOfZeros_IsTheKeyStreamBlockByBlock) {
    const std::string stream = chaCha20::apply({}, 0, {}, std::string(130, '\0'));
    EXPECT_EQ(stream.substr(0, 64), toText(chaCha20::keyStreamBlock({}, 0, {})));
    EXPECT_EQ(stream.substr(64, 64), toText(chaCha20::keyStreamBlock({}, 1, {})));
    EXPECT_EQ(stream.substr(128), toText(chaCha20::keyStreamBlock({}, 2, {})).substr(0, 2));
}

}  // namespace
}  // namespace dovrel
