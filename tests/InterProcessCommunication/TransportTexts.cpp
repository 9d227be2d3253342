#include "tests/InterProcessCommunication/TransportTexts.h"

#include <string>

#include "settings/MultiLanguageSupport.h"

namespace dovrel::test {

TransportTexts::TransportTexts() {
    installation_.install(
        std::string("//LANGUAGE\nSTR:English\n") +
        "//DLL_POS_TRANSFER_OBJECT_TRADER_POS_EXCEPTION_NO_VALID_POS_INTERFACE\nSTR:" + kNoValidInterface +
        "\n//DLL_POS_TRANSFER_OBJECT_TRADER_EXCEPTION_WRONG_IDENTIFIER_SIZE\nSTR:" + kWrongIdentifier +
        "\n//DLL_POS_TRANSFER_OBJECT_TRADER_EXCEPTION_COMMAND_AND_ARGUMENT_TOO_LONG\nSTR:" + kCommandTooLong +
        "\n");
    MultiLanguageSupport::initialize(kLanguageEnglish);
}

}  // namespace dovrel::test
