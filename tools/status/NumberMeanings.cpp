#include "tools/status/NumberMeanings.h"

#include <limits>
#include <set>

#include "InterProcessCommunication/ServerDiscovery.h"
#include "client/exceptions/ExceptionTypeNames.h"
#include "dovrel/pos.h"
#include "platform/trace/StatusNames.h"
#include "serialization/StructuredDataFormat.h"
#include "tools/status/Advice.h"

namespace dovrel::tools {

namespace {

struct NamedNumber {
    int64_t number;
    const char* name;
    const char* advice;
};

constexpr NamedNumber kResults[] = {
    {POS_OK, "POS_OK", "Nothing: the call succeeded."},
    {POS_FAILURE, "POS_FAILURE",
     "The call failed. The alert and the error log contain the reason; \"dovrel doctor\" shows the last "
     "entries."},
};

constexpr NamedNumber kConnectionResults[] = {
    {kServerNotFound, "server application not found",
     "Install the server. \"dovrel doctor\" shows where it is missing."},
    {kServerNotLaunched, "server cannot be launched or does not answer",
     "End a server that hangs (\"dovrel server stop --force\"), then see what \"dovrel doctor --launch\" "
     "finds."},
};

constexpr char kDamagedBlock[] =
    "The bytes come from the server or from a file. \"dovrel decode\" shows where they break. If a reply "
    "breaks, "
    "check with \"dovrel doctor\" that library and server belong together.";
constexpr char kFaultOfTheProgram[] =
    "This is a fault in the program that uses the library's classes. Report it with the entry of the error "
    "log.";

struct NamedSite {
    const char* code;
    const char* name;
    const char* advice;
};

constexpr NamedSite kSites[] = {
    {structuredData::site::kWriterInitialize, "writer: no target, or no room for the header of a block",
     kFaultOfTheProgram},
    {structuredData::site::kWriterPartHeader, "writer: no room for the header of a part", kFaultOfTheProgram},
    {structuredData::site::kWriteArrayPart, "writer: no room for a part from a byte array",
     kFaultOfTheProgram},
    {structuredData::site::kWriteBytesPart, "writer: no room for a part from bytes", kFaultOfTheProgram},
    {structuredData::site::kWriteStreamPart, "writer: no room for a part from a stream", kFaultOfTheProgram},
    {structuredData::site::kReaderInitialize, "reader: there are no bytes to read", kDamagedBlock},
    {structuredData::site::kReaderBounds, "reader: the block ends too early", kDamagedBlock},
    {structuredData::site::kReaderFormat,
     "reader: the bytes are not a structured block (1: magic number, 2: format)", kDamagedBlock},
    {structuredData::site::kGetTypeNumber, "reader: the type number was requested before a block was read",
     kFaultOfTheProgram},
    {structuredData::site::kGetPart, "reader: a part is missing (2), or no block was read (1)",
     kDamagedBlock},
    {structuredData::site::kReadPart, "reader: a part was requested before a block was read",
     kFaultOfTheProgram},
    {structuredData::site::kGetPartLength, "reader: a part is missing (2), or no block was read (1)",
     kDamagedBlock},
    {structuredData::site::kCommandData, "client: command and argument do not fit into a request",
     kFaultOfTheProgram},
};

bool fitsInto32Bits(int64_t number) {
    return number >= std::numeric_limits<int32_t>::min() && number <= std::numeric_limits<int32_t>::max();
}

// The number itself, and the negative numbers that it can be if its sign was lost.
std::set<int64_t> possibleStatuses(int64_t number) {
    std::set<int64_t> numbers;
    if (fitsInto32Bits(number)) numbers.insert(number);
    if (number >= 0x8000 && number <= 0xFFFF) numbers.insert(number - 0x10000);
    if (number >= 0x80000000 && number <= 0xFFFFFFFF) numbers.insert(number - 0x100000000);
    return numbers;
}

void addResults(int64_t number, std::vector<NumberMeaning>& meanings) {
    for (const NamedNumber& named : kResults) {
        const bool isNumber = number == named.number || number == named.number - 0x100000000;
        if (isNumber) meanings.push_back({"result of a function", named.number, named.name, named.advice});
    }
}

void addStatuses(int64_t number, std::vector<NumberMeaning>& meanings) {
    for (const int64_t status : possibleStatuses(number)) {
        const auto code = static_cast<int32_t>(status);
        const std::string text = statusText(code);
        const size_t begin = text.find('(');
        if (begin == std::string::npos) continue;
        const std::string name = text.substr(begin + 1, text.size() - begin - 2);
        meanings.push_back({"platform status", status, name, statusAdvice(code)});
    }
}

void addErrorCodes(int64_t number, std::vector<NumberMeaning>& meanings) {
    if (number < 0 || number > std::numeric_limits<uint32_t>::max()) return;
    const auto code = static_cast<uint32_t>(number);
    const char* const serverName = serverErrorName(code);
    const char* const typeName = exceptionTypeName(code);
    if (serverName != nullptr)
        meanings.push_back({"error code of the server", number, serverName, errorCodeAdvice(code)});
    // Most type codes are error codes of the server as well.
    if (typeName != nullptr && (serverName == nullptr || std::string(serverName) != typeName))
        meanings.push_back({"type of a failure in the client", number, typeName, failureTypeAdvice(code)});
}

}  // namespace

std::vector<NumberMeaning> findMeanings(int64_t number) {
    std::vector<NumberMeaning> meanings;
    addResults(number, meanings);
    addStatuses(number, meanings);
    addErrorCodes(number, meanings);
    for (const NamedNumber& named : kConnectionResults)
        if (number == named.number)
            meanings.push_back({"result of connecting to the server", number, named.name, named.advice});
    return meanings;
}

std::vector<NumberMeaning> findSiteMeanings(const std::string& code) {
    constexpr size_t kDigits = 12;
    constexpr size_t kDigitsOfTime = 8;
    constexpr char kEnd[] = ": ";
    std::string wanted;
    for (const char character : code)
        wanted += static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    if (wanted.size() == kDigits) wanted += kEnd;
    for (const NamedSite& site : kSites) {
        if (wanted != site.code && wanted + " " != site.code) continue;
        const int64_t number = std::stol(wanted.substr(kDigitsOfTime, kDigits - kDigitsOfTime), nullptr, 16);
        return {{"error-site code", number, site.name, site.advice}};
    }
    return {};
}

}  // namespace dovrel::tools
