// The enciphered form of a whole text file: "ENC", followed in base64 by a nonce of 12 bytes and the text
// enciphered with ChaCha20.
//
// The key is a constant of this library, so everybody who has the library can read such a file. This form
// only keeps users from reading and editing settings in a text editor. It does not protect secrets and does
// not detect changes, so never store a secret in it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "settings/ChaCha20.h"

namespace dovrel {

inline constexpr std::string_view kEncipheredMark = "ENC";

/// Returns whether the content of a file begins with the mark.
bool isEnciphered(std::string_view content);

/// Returns the enciphered form of a text, with a new nonce from the system's random source. So two calls with
/// the same text return different results.
std::string encipher(std::string_view text);

/// As above with a given nonce. Never use a nonce for two texts.
std::string encipher(std::string_view text, const chaCha20::Nonce& nonce);

/// Returns the text of an enciphered form. Returns nothing if the mark is missing, if the rest is not base64,
/// or if it is shorter than a nonce.
std::optional<std::string> decipher(std::string_view content);

}  // namespace dovrel
