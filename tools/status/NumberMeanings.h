// Looks up the numbers that the library shows in alerts, logs and traces.
//
// The names come from the tables of the library. The advice for each of them is here.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace dovrel::tools {

/// One meaning of a number.
struct NumberMeaning {
    std::string kind;    ///< where the number occurs, for example "platform status"
    int64_t number = 0;  ///< the number in this meaning; 64936 can be the platform status -600
    std::string name;    ///< the platform's or the library's name
    std::string advice;  ///< what to do
};

/// Returns all meanings of a number; empty if it has none. A number of 16 or 32 bits whose sign was lost is
/// also looked up as a negative number.
std::vector<NumberMeaning> findMeanings(int64_t number);

/// Returns the meaning of an error-site code, the 12 hexadecimal digits in the detail of a failure. Nothing may
/// follow them except ": ". Returns nothing if the text is not such a code, or if no place has it. `number` of
/// the result is the number of the site, which is the last 4 digits.
std::vector<NumberMeaning> findSiteMeanings(const std::string& code);

}  // namespace dovrel::tools
