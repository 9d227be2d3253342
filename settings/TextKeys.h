// The keys of all texts for the user. Code uses these constants and never repeats the literal. The file
// resources/MultiLanguageTexts.mls has a text for each key in every language that it contains.
#pragma once

namespace dovrel {

// Alerts: titles and buttons.
inline constexpr const char* kErrorDialogTitle = "ERROR_DLG_TITLE";
inline constexpr const char* kDllErrorDialogTitle = "DLL_ERROR_DIALOG_TITLE";
inline constexpr const char* kDllMessageDialogTitle = "DLL_MESSAGE_DIALOG_TITLE";
inline constexpr const char* kGeneralButtonOk = "GENERAL_BUTTON_OK";
inline constexpr const char* kGeneralButtonCancel = "GENERAL_BUTTON_CANCEL";
inline constexpr const char* kGeneralButtonRetry = "GENERAL_BUTTON_RETRY";

// The text of a failure alert consists of: part 1, the application's name, part 2, the failure's own message,
// and one of the explanations below.
inline constexpr const char* kDllErrorMessageHeadPart1 = "DLL_ERROR_ERRORMESSAGEHEAD_PART1";
inline constexpr const char* kDllErrorMessageHeadPart2 = "DLL_ERROR_ERRORMESSAGEHEAD_PART2";

// Explanations: what the failure means for the user and what the user can do. The
// failure's type code selects one.
inline constexpr const char* kDllErrorUnrecoverableError = "DLL_ERROR_UNRECOVERABLE_ERROR";
inline constexpr const char* kDllErrorClassOrDriverNotFound =
    "DLL_ERROR_POS_CLASS_OR_DRIVER_NOT_FOUND_EXCEPTION";
inline constexpr const char* kDllErrorObjectInstantiation = "DLL_ERROR_POS_OBJECT_INSTANTIATION_EXCEPTION";
inline constexpr const char* kDllErrorRegistration = "DLL_ERROR_POS_REGISTRATION_EXCEPTION";

// The second question, shown when the user cancels a failed registration.
inline constexpr const char* kDllAttentionMessage = "DLL_ATTENTION_MESSAGE";

// Messages of failures that the library itself detects.
inline constexpr const char* kGeneralErrorUnknownException = "GENERAL_ERROR_UNKNOWN_EXCEPTION";
inline constexpr const char* kDllClassNotRegistered = "DLL_POS_ACCESS_CLIENT_EXCEPTION_CLASS_NOT_REGISTERED";
inline constexpr const char* kDllNullPointerPassed =
    "DLL_POS_ACCESS_CLIENT_EXCEPTION_CPP_A_NULL_POINTER_HAS_BEEN_PASSED";
inline constexpr const char* kDllNoValidPosInterface =
    "DLL_POS_TRANSFER_OBJECT_TRADER_POS_EXCEPTION_NO_VALID_POS_INTERFACE";
inline constexpr const char* kDllCommandTooLong =
    "DLL_POS_TRANSFER_OBJECT_TRADER_EXCEPTION_COMMAND_AND_ARGUMENT_TOO_LONG";
inline constexpr const char* kDllWrongIdentifierSize =
    "DLL_POS_TRANSFER_OBJECT_TRADER_EXCEPTION_WRONG_IDENTIFIER_SIZE";
inline constexpr const char* kDllInformationTooLong = "DLL_POS_ACCESS_CLIENT_EXCEPTION_INFORMATION_TOO_LONG";
inline constexpr const char* kDllMsgMerrowdIsMissing = "DLL_MSG_MERROWD_IS_MISSING_MACOSX";
inline constexpr const char* kDllMsgMerrowdIsCorrupt = "DLL_MSG_MERROWD_IS_CORRUPT_MACOSX";

// All keys, in the order above.
inline constexpr const char* kAllTextKeys[] = {kErrorDialogTitle,
                                               kDllErrorDialogTitle,
                                               kDllMessageDialogTitle,
                                               kGeneralButtonOk,
                                               kGeneralButtonCancel,
                                               kGeneralButtonRetry,
                                               kDllErrorMessageHeadPart1,
                                               kDllErrorMessageHeadPart2,
                                               kDllErrorUnrecoverableError,
                                               kDllErrorClassOrDriverNotFound,
                                               kDllErrorObjectInstantiation,
                                               kDllErrorRegistration,
                                               kDllAttentionMessage,
                                               kGeneralErrorUnknownException,
                                               kDllClassNotRegistered,
                                               kDllNullPointerPassed,
                                               kDllNoValidPosInterface,
                                               kDllCommandTooLong,
                                               kDllWrongIdentifierSize,
                                               kDllInformationTooLong,
                                               kDllMsgMerrowdIsMissing,
                                               kDllMsgMerrowdIsCorrupt};

}  // namespace dovrel
