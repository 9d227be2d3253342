// Short functions for creating and reading Apple events.
#pragma once

#include <CoreServices/CoreServices.h>

#include <string>

// The event class of the test application, and the events that it handles.
enum {
    kTestClass = 'test',
    kEcho = 'echo',         // replies with the direct parameter, with the same type
    kAnswerEmpty = 'emty',  // replies with an empty direct parameter
    kAnswerNothing = 'noth',
    kFail = 'fail',  // puts a parameter 'part', then fails with the number in the direct parameter
    kFailWithText = 'ftxt',
    kThrow = 'thro',
    kDecline = 'decl',     // its handler returns errAEEventNotHandled
    kNobody = 'nobo',      // has no handler
    kHold = 'hold',        // reports 'h', and replies when the test calls letGo
    kDie = 'die ',         // ends its process at once
    kReport = 'repo',      // reports the type of the reply descriptor to the test through the pipe
    kAttributes = 'attr',  // replies with the values of the attributes
    kMissed = 'miss',      // replies with keyMissedKeywordAttr before and after reading
    kCount = 'coun',       // replies with how often it was called
    kSuspend = 'susp'      // reports 's' after it has suspended its event
};

// Values that no call writes by itself.
constexpr DescType kOddType = 0x5A5A5A5A;
constexpr Size kOddSize = 0x5A5A;

/// A descriptor that the destructor disposes of.
struct Descriptor {
    AEDesc desc = {typeNull, nullptr};

    Descriptor() = default;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : desc(other.desc) { AEInitializeDesc(&other.desc); }
    ~Descriptor() { AEDisposeDesc(&desc); }
    AEDesc* get() { return &desc; }
    const AEDesc* get() const { return &desc; }
};

inline Descriptor makeAddress(const char* signature) {
    Descriptor address;
    OSType code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(signature[i]);
    AECreateDesc(typeApplSignature, &code, sizeof code, address.get());
    return address;
}

inline Descriptor makeEvent(const Descriptor& address, AEEventID id, AEEventClass eventClass = kTestClass) {
    Descriptor event;
    AECreateAppleEvent(eventClass, id, address.get(), kAutoGenerateReturnID, kAnyTransactionID, event.get());
    return event;
}

/// Returns an event without a target.
inline Descriptor anEvent() {
    return makeEvent(makeAddress("NOBO"), kEcho);
}

inline OSErr putText(Descriptor& event, const std::string& text, AEKeyword keyword = keyDirectObject) {
    return AEPutParamPtr(event.get(), keyword, typeChar, text.data(), static_cast<Size>(text.size()));
}

/// Returns the bytes of a parameter; "(none)" or a similar text with the error if it cannot be read.
inline std::string toText(const Descriptor& event, AEKeyword keyword = keyDirectObject,
                          DescType type = typeChar) {
    Size size = -1;
    const OSErr error = AEGetParamPtr(event.get(), keyword, type, nullptr, nullptr, 0, &size);
    if (error != noErr) return "(error " + std::to_string(error) + ")";
    std::string text(static_cast<size_t>(size), '\0');
    AEGetParamPtr(event.get(), keyword, type, nullptr, text.data(), size, nullptr);
    return text;
}

/// Returns an integer parameter; `missing` if it cannot be read.
inline long parseNumber(const Descriptor& event, AEKeyword keyword, long missing = -99999) {
    SInt32 number = 0;
    if (AEGetParamPtr(event.get(), keyword, typeSInt32, nullptr, &number, sizeof number, nullptr) != noErr)
        return missing;
    return static_cast<long>(number);
}
