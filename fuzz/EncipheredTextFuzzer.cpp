// Fuzz target for the enciphered form. Every input is either not an enciphered form, or the form of exactly
// one text. Every text is restored from its enciphered form.

#include <algorithm>
#include <optional>
#include <string>

#include "FuzzTarget.h"
#include "settings/Base64.h"
#include "settings/EncipheredText.h"

namespace {

using namespace dovrel;

std::string withoutSpace(std::string text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    text.erase(std::remove_if(text.begin() + 3, text.end(), isSpace), text.end());
    return text;
}

void checkForm(const std::string& input) {
    const std::optional<std::string> text = decipher(input);
    if (!text) return;
    FUZZ_CHECK(isEnciphered(input));
    const std::string bytes = decodeBase64(input.substr(kEncipheredMark.size())).value_or("");
    chaCha20::Nonce nonce{};
    FUZZ_CHECK(bytes.size() == nonce.size() + text->size());
    std::copy_n(bytes.begin(), nonce.size(), nonce.begin());
    FUZZ_CHECK(encipher(*text, nonce) == withoutSpace(input));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    checkForm(input);
    checkForm("ENC" + input);
    FUZZ_CHECK(decipher(encipher(input)) == input);
    FUZZ_CHECK(decodeBase64(encodeBase64(input)) == input);
    return 0;
}
