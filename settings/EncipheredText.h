// The enciphered form of a whole text file: "ENC", then in base64 a nonce of 12 bytes and the text under
// ChaCha20.
//
// The key is a constant of this library, so everybody who has the library can read such a file. The form
// keeps settings from being read and edited by curious eyes in a text editor; it keeps no secret from anybody
// who looks closer, and it does not notice a file that was changed. Nothing that must stay secret belongs
// into one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "settings/ChaCha20.h"

namespace dovrel {

inline constexpr std::string_view kEncipheredMark = "ENC";

/// Whether the content of a file begins with the mark of the form.
bool isEnciphered(std::string_view content);

/// The enciphered form of a text, with a nonce of its own from the system's random source. Two calls give two
/// forms.
std::string encipher(std::string_view text);

/// The same with a given nonce, which must never have served another text.
std::string encipher(std::string_view text, const chaCha20::Nonce& nonce);

/// The text of an enciphered form. Nothing when the mark is missing, when the rest is not base64, or when it
/// is too short to hold a nonce.
std::optional<std::string> decipher(std::string_view content);

}  // namespace dovrel
