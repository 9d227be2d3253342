// The system report for the manufacturer's support: the operating system of this machine, and the installed
// versions of the product. It is always in English.
#pragma once

#include <string>

namespace dovrel {

/// Returns two sections that replace the details of the system and the logs of crashes. The library does
/// not collect such information.
std::string removedInformationText();

/// Returns the complete report in UTF-8; each line ends with a line feed. It contains the operating system,
/// the versions of the components and of their installers, whether these installers agree, and
/// removedInformationText(). Reads everything again at each call.
///
/// A missing or damaged value is not a failure: it appears as "n/a", or as "(null)" for the
/// operating system. Any thread.
std::string systemReport();

}  // namespace dovrel
