#include "server/ImportedClasses.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "InterProcessCommunication/POSFieldForms.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/CPPException.h"
#include "platform/text/TextConversions.h"
#include "server/DescribedClass.h"
#include "server/SettingValue.h"
#include "settings/LogFileWriter.h"

namespace merrowd {

using dovrel::bytesToText;
using dovrel::CPPException;
using dovrel::LogFileWriter;
using dovrel::POSTransferObj;
namespace posCommand = dovrel::posCommand;
namespace posField = dovrel::posField;

namespace {

/// The recorded outcome of a method call or of the creation of an object.
struct ImportedReply {
    bool fails = false;
    uint32_t errorCode = 0;
    std::string errorText;
    std::string result;
    dovrel::POSServerMessage message;

    bool operator==(const ImportedReply& other) const {
        return fails == other.fails && errorCode == other.errorCode && errorText == other.errorText &&
               result == other.result && message.flags == other.message.flags &&
               message.text == other.message.text;
    }
};

using Replies = std::vector<ImportedReply>;

/// The calls of a method with one argument.
struct ImportedCalls {
    std::map<size_t, Replies> byObject;

    Replies longest() const {
        Replies found;
        for (const auto& [object, replies] : byObject)
            if (replies.size() > found.size()) found = replies;
        return found;
    }
};

/// Values by key, in the order in which the keys were added.
template <typename Value>
class OrderedMap {
  public:
    /// Adds a new value if the key is not in the map.
    Value& operator[](const std::string& key) {
        const auto [place, isNew] = places_.emplace(key, entries_.size());
        if (isNew) entries_.emplace_back(key, Value());
        return entries_[place->second].second;
    }

    const std::vector<std::pair<std::string, Value>>& entries() const { return entries_; }

  private:
    std::map<std::string, size_t> places_;
    std::vector<std::pair<std::string, Value>> entries_;
};

using ImportedMethod = OrderedMap<ImportedCalls>;  // by the argument

struct ImportedClass {
    Replies creations;
    OrderedMap<ImportedMethod> methods;
    std::set<std::string> unusableNames;  // of methods
};

bool isPlainText(const std::string& text) {
    const auto isPrintable = [](char c) { return c >= ' ' && c <= '~'; };
    return !text.empty() && text.front() != ' ' && text.back() != ' ' &&
           std::all_of(text.begin(), text.end(), isPrintable);
}

// Whether a settings text can contain the name of a method. Bytes outside ASCII can be UTF-8 or Mac Roman.
bool isUsableName(const std::string& name) {
    const auto isUsable = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= ' ' && byte != '\x7F' && c != ',';
    };
    return !name.empty() && name.front() != ' ' && name.back() != ' ' &&
           name != DescribedClass::kInstantiate && std::all_of(name.begin(), name.end(), isUsable);
}

/// Collects the classes of a recording, exchange by exchange.
class Collection {
  public:
    /// Whether exchanges of the command describe a class.
    static bool uses(uint32_t command) {
        return command == posCommand::kInstantiateObject || command == posCommand::kCallMethod;
    }

    void add(POSTransferObj& request, POSTransferObj& reply) {
        if (request.getCommand() == posCommand::kInstantiateObject) addCreation(request, reply);
        if (request.getCommand() == posCommand::kCallMethod) addCall(request, reply);
    }

    const std::map<std::string, ImportedClass>& classes() const { return classes_; }

  private:
    struct LiveObject {
        std::string ofClass;
        size_t number = 0;
    };

    static ImportedReply makeReply(POSTransferObj& reply, const dovrel::POSField* result) {
        ImportedReply made;
        made.fails = reply.getMessageKind() == dovrel::kMessageKindException;
        if (made.fails) {
            made.errorCode = reply.readUInt32(posField::kExceptionCode);
            made.errorText = reply.readString(posField::kExceptionText);
            return made;
        }
        if (result != nullptr) made.result = reply.readString(*result);
        made.message = dovrel::readServerMessage(reply, posField::kServerMessage);
        return made;
    }

    void addCreation(POSTransferObj& request, POSTransferObj& reply) {
        const std::string ofClass = request.readString(posField::kClass);
        const ImportedReply made = makeReply(reply, nullptr);
        classes_[ofClass].creations.push_back(made);
        if (made.fails) return;
        objects_[{request.readUInt32(posField::kSession), reply.readString(posField::kObject)}] = {
            ofClass, ++objectCount_};
    }

    void addCall(POSTransferObj& request, POSTransferObj& reply) {
        const auto object =
            objects_.find({request.readUInt32(posField::kSession), request.readString(posField::kObject)});
        if (object == objects_.end()) return;
        std::string name = request.readString(posField::kMethodName);
        if (!name.empty() && name.back() == '\0') name.pop_back();
        ImportedClass& imported = classes_[object->second.ofClass];
        if (!isUsableName(name)) {
            imported.unusableNames.insert(name);
            return;
        }
        const std::string argument = request.readString(posField::kArgument);
        const ImportedReply made = makeReply(reply, &posField::kResult);
        imported.methods[name][argument].byObject[object->second.number].push_back(made);
    }

    std::map<std::string, ImportedClass> classes_;
    std::map<std::pair<uint32_t, std::string>, LiveObject> objects_;
    size_t objectCount_ = 0;
};

void writeBytes(std::string& text, const std::string& key, const std::string& bytes) {
    LogFileWriter entries(text);
    if (isPlainText(bytes)) return entries.writeString(key, bytes);
    entries.writeBinary(key, bytes.data(), static_cast<uint32_t>(bytes.size()));
}

void writeReply(std::string& text, const std::string& path, const ImportedReply& reply, bool hasResult) {
    LogFileWriter entries(text);
    if (reply.fails) {
        entries.writeInt(path + ".errorCode", static_cast<int32_t>(reply.errorCode));
        entries.writeString(path + ".errorText", reply.errorText);
        return;
    }
    if (hasResult) writeBytes(text, path + ".answer", reply.result);
    if (reply.message.flags == 0) return;
    entries.writeString(path + ".message", reply.message.text);
    entries.writeInt(path + ".messageFlags", static_cast<int32_t>(reply.message.flags));
}

std::string listNames(const std::string& word, size_t count) {
    std::string names;
    for (size_t i = 1; i <= count; ++i)
        names += (i == 1 ? "" : ", ") + word + std::to_string(i);
    return names;
}

void writeReplies(std::string& text, const std::string& path, const Replies& replies, bool hasResult) {
    const bool areEqual = std::all_of(replies.begin(), replies.end(),
                                      [&](const ImportedReply& reply) { return reply == replies.front(); });
    if (areEqual && !replies.empty()) return writeReply(text, path, replies.front(), hasResult);
    if (replies.empty()) return;
    LogFileWriter(text).writeString(path + ".sequence", listNames("step", replies.size()));
    for (size_t i = 0; i < replies.size(); ++i)
        writeReply(text, path + ".step" + std::to_string(i + 1), replies[i], hasResult);
}

void writeMethod(std::string& text, const std::string& name, const ImportedMethod& method) {
    const auto& calls = method.entries();
    LogFileWriter entries(text);
    entries.writeString(name + ".cases", listNames("case", calls.size()));
    for (size_t i = 0; i < calls.size(); ++i) {
        const std::string path = name + ".case" + std::to_string(i + 1);
        writeBytes(text, path + ".argument", calls[i].first);
        writeReplies(text, path, calls[i].second.longest(), true);
    }
    entries.writeInt(name + ".errorCode", static_cast<int32_t>(refusalCode::kPOSMethodExecution));
    entries.writeString(name + ".errorText", "The recording has no call with this argument.");
}

// Returns the identifier without the zero bytes at its end if that is a text, otherwise in hexadecimal digits.
std::string makeName(const std::string& identifier) {
    const std::string name = identifier.substr(0, identifier.find_last_not_of('\0') + 1);
    return isPlainText(name)
               ? name
               : dovrel::bytesToHexText(identifier.data(), static_cast<uint32_t>(identifier.size()));
}

void writeClass(std::string& text, const std::string& identifier, const ImportedClass& imported) {
    LogFileWriter entries(text);
    entries.writeString(DescribedClass::kSectionKey, makeName(identifier));
    entries.writeBinary("identifier", identifier.data(), static_cast<uint32_t>(identifier.size()));
    std::string names;
    for (const auto& [name, method] : imported.methods.entries())
        names += (names.empty() ? "" : ", ") + name;
    if (!names.empty()) entries.writeString("methods", names);
    writeReplies(text, DescribedClass::kInstantiate, imported.creations, false);
    for (const auto& [name, method] : imported.methods.entries())
        writeMethod(text, name, method);
}

void addExchange(Collection& collection, const Recording& recording, const RecordedExchange& exchange) {
    const CPPByteArray requestBytes = recording.read(exchange.request);
    // The replies to other commands are not read, because they can be large.
    if (!Collection::uses(dovrel::readCommandCode(requestBytes))) return;
    POSTransferObj request;
    POSTransferObj reply;
    request.copyBytesFrom(requestBytes);
    reply.copyBytesFrom(recording.read(exchange.reply));
    try {
        collection.add(request, reply);
    } catch (CPPException* caught) {
        // An exchange that cannot be read describes nothing.
        const std::unique_ptr<CPPException> failure(caught);
    }
}

}  // namespace

std::string describeClasses(const Recording& recording, std::vector<std::string>& problems) {
    Collection collection;
    for (const RecordedExchange& exchange : recording.exchanges())
        if (!exchange.failed) addExchange(collection, recording, exchange);
    std::string text;
    for (const auto& [identifier, imported] : collection.classes()) {
        writeClass(text, identifier, imported);
        for (const std::string& name : imported.unusableNames)
            problems.push_back(recording.path() + ": settings cannot contain the name of the method " +
                               inQuotes(name) + " of the class " + inQuotes(makeName(identifier)) +
                               "; its calls are left out");
    }
    return text;
}

}  // namespace merrowd
