// The system report: what the machine runs and which versions of the product are installed on it, for the
// maker's support. It is in English, whatever the user's language.
#pragma once

#include <string>

namespace dovrel {

/// The two sections that stand where details of the system and logs of crashes are withheld; nothing of the
/// kind is gathered.
std::string removedInformationText();

/// The complete report in UTF-8, lines ended by line feeds, read anew at each call: the operating system, the
/// components with their versions and those of their installers, whether these agree, the sections of
/// removedInformationText. What is missing or damaged reads "n/a", or as the platform formats an absent
/// object; it is no failure. Any thread.
std::string systemReport();

}  // namespace dovrel
