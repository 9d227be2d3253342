// The table of the wire protocol: the fields of every request and every reply.
//
// A request or a reply is one structured block (serialization/StructuredDataFormat.h) with the type number
// kTransferObjFormatVersion. Its parts are the header fields 0, 1 and 3, then the fields of the command in
// the order of this table. To add a command, add a row here. The library, the development server and
// docs/protocol.md follow this table; their tests compare them with it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace dovrel {

constexpr uint32_t kTransferObjFormatVersion = 9;

/// The interface version that the server must return for command 17.
constexpr uint32_t kPOSInterfaceVersion = 7;

/// Number of bytes in the identifier of a class, an object or an executer.
constexpr uint32_t kPOSIdentifierSize = 16;

/// The executer word of an instantiation that names no executer.
constexpr uint32_t kNoExecuter = 0xFFFFFFFF;

/// Bit of the registration flags: the client must check instantiations against the registered classes.
constexpr uint32_t kRegistrationChecksClasses = 1;

/// Value of header field 0.
constexpr uint32_t kTransferKindStandard = 1;

/// Values of header field 1. A reply with a value other than kMessageKindException is a normal reply.
constexpr uint32_t kMessageKindRequest = 10;
constexpr uint32_t kMessageKindException = 20;

/// Error codes (field 151) without a class of their own; newPOSExceptionForCode returns null for them.
constexpr uint32_t kErrorCodeGeneral = 0;
constexpr uint32_t kErrorCodeNoValidInterface = 3;

/// The format of a field's data.
enum class POSFieldForm {
    kUInt32,              ///< 4 bytes, little-endian; readers zero-extend a shorter field
    kIdentifier,          ///< kPOSIdentifierSize bytes
    kOptionalIdentifier,  ///< kPOSIdentifierSize bytes, or no bytes if there is no identifier
    kName,                ///< characters and a terminating NUL
    kText,                ///< characters without a terminating NUL
    kData                 ///< any bytes (including none)
};

/// One field. Converts implicitly to its number.
struct POSField {
    uint32_t number = 0;
    const char* name = "";
    POSFieldForm form = POSFieldForm::kData;

    constexpr operator uint32_t() const { return number; }
};

namespace posField {

// The header fields. The reserved field is never written.
inline constexpr POSField kTransferKind{0, "transfer kind", POSFieldForm::kUInt32};
inline constexpr POSField kMessageKind{1, "message kind", POSFieldForm::kUInt32};
inline constexpr POSField kReserved{2, "reserved", POSFieldForm::kUInt32};
inline constexpr POSField kCommand{3, "command", POSFieldForm::kUInt32};

inline constexpr POSField kApplicationName{100, "application name", POSFieldForm::kName};
/// The client's process serial number, byte by byte as in its memory, or no bytes.
inline constexpr POSField kClientProcess{101, "client process identity", POSFieldForm::kData};
inline constexpr POSField kSession{103, "session identifier", POSFieldForm::kUInt32};
inline constexpr POSField kExecuter{104, "executer identifier", POSFieldForm::kOptionalIdentifier};
inline constexpr POSField kCommandExecuter{104, "executer identifier", POSFieldForm::kIdentifier};
inline constexpr POSField kObject{105, "object identifier", POSFieldForm::kIdentifier};
inline constexpr POSField kClass{106, "class identifier", POSFieldForm::kIdentifier};
inline constexpr POSField kMethodName{107, "method name", POSFieldForm::kName};
inline constexpr POSField kInformationRequest{108, "information request", POSFieldForm::kData};
inline constexpr POSField kInformation{109, "information", POSFieldForm::kData};
inline constexpr POSField kArgument{110, "argument data", POSFieldForm::kData};
/// The bytes of the command, then those of its argument.
inline constexpr POSField kCommandData{110, "command data", POSFieldForm::kData};
inline constexpr POSField kResult{111, "result data", POSFieldForm::kData};
/// The number of bytes at the start of the command data that are the command.
inline constexpr POSField kCommandLength{112, "command length", POSFieldForm::kUInt32};
/// The option codes as the host passed them.
inline constexpr POSField kOptions{114, "options", POSFieldForm::kData};
/// A 32-bit little-endian word of flags; readers zero-extend a shorter field.
inline constexpr POSField kRegistrationFlags{115, "registration flags", POSFieldForm::kData};
/// Always empty.
inline constexpr POSField kCreationData{116, "creation data", POSFieldForm::kData};
inline constexpr POSField kExecuterWord{117, "executer word", POSFieldForm::kUInt32};
inline constexpr POSField kInterfaceVersion{118, "interface version", POSFieldForm::kUInt32};
/// A 32-bit little-endian word of flags, then a text for the user. There is no message if the word is 0 or if
/// the field has less than 4 bytes.
inline constexpr POSField kServerMessage{120, "server message", POSFieldForm::kData};
/// A byte array list (serialization/ByteArrayList.h) of class identifiers.
inline constexpr POSField kClassList{130, "class list", POSFieldForm::kData};

// An exception reply has these two fields after its header, and no others.
inline constexpr POSField kExceptionText{150, "exception text", POSFieldForm::kText};
inline constexpr POSField kExceptionCode{151, "exception code", POSFieldForm::kUInt32};

}  // namespace posField

/// The fields of a request or a reply, in their order.
class POSFieldList {
  public:
    constexpr POSFieldList(std::initializer_list<POSField> fields) {
        for (const POSField& field : fields)
            fields_[count_++] = field;
    }

    constexpr const POSField* begin() const { return fields_.data(); }
    constexpr const POSField* end() const { return fields_.data() + count_; }
    constexpr std::size_t size() const { return count_; }

  private:
    static constexpr std::size_t kMostFields = 5;

    std::array<POSField, kMostFields> fields_;
    std::size_t count_ = 0;
};

/// One command. Converts implicitly to its code.
struct POSCommand {
    uint32_t code;
    const char* name;
    POSFieldList request;  ///< the fields after the header, in this order
    POSFieldList reply;    ///< the fields of a normal reply after its header, in any order

    constexpr operator uint32_t() const { return code; }
};

namespace posCommand {

inline constexpr POSCommand kRegisterApplication{
    10,
    "register application",
    {posField::kApplicationName, posField::kClientProcess, posField::kClassList, posField::kOptions},
    {posField::kSession, posField::kRegistrationFlags}};

inline constexpr POSCommand kUnregisterApplication{11, "unregister application", {posField::kSession}, {}};

inline constexpr POSCommand kInstantiateObject{
    12,
    "instantiate object",
    {posField::kSession, posField::kClass, posField::kCreationData, posField::kExecuterWord},
    {posField::kObject, posField::kServerMessage}};

inline constexpr POSCommand kDeleteObject{13, "delete object", {posField::kSession, posField::kObject}, {}};

inline constexpr POSCommand kCallMethod{
    14,
    "call method",
    {posField::kSession, posField::kObject, posField::kMethodName, posField::kArgument, posField::kExecuter},
    {posField::kResult, posField::kServerMessage}};

inline constexpr POSCommand kExecuteCommand{
    15,
    "execute command",
    {posField::kSession, posField::kCommandExecuter, posField::kCommandData, posField::kCommandLength},
    {posField::kResult}};

inline constexpr POSCommand kGetInformation{
    16, "get information", {posField::kSession, posField::kInformationRequest}, {posField::kInformation}};

inline constexpr POSCommand kQueryInterfaceVersion{
    17, "query interface version", {}, {posField::kInterfaceVersion}};

}  // namespace posCommand

/// All commands, in ascending order of their codes.
inline constexpr std::array<POSCommand, 8> kPOSCommands{
    posCommand::kRegisterApplication, posCommand::kUnregisterApplication,
    posCommand::kInstantiateObject,   posCommand::kDeleteObject,
    posCommand::kCallMethod,          posCommand::kExecuteCommand,
    posCommand::kGetInformation,      posCommand::kQueryInterfaceVersion};

/// Returns the command with the code, or null if there is none.
constexpr const POSCommand* findPOSCommand(uint32_t code) {
    for (const POSCommand& command : kPOSCommands)
        if (command.code == code) return &command;
    return nullptr;
}

static_assert(findPOSCommand(10) == &kPOSCommands.front() && findPOSCommand(17) == &kPOSCommands.back() &&
                  findPOSCommand(9) == nullptr && findPOSCommand(18) == nullptr,
              "the codes run from 10 to 17 and never change");

}  // namespace dovrel
