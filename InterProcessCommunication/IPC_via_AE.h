// IPC_via_AE: the Apple event channel between a client and the server, and the codes of its events.
//
//   use                event class  id      direct parameter ('----', type 'TEXT')
//   data exchange      'BUFF'       'data'  the bytes of a transfer object, also in the reply
//   wake-up handshake  'BUFF'       'waCl'  the 8 bytes "startPos"
//   quit the server    'aevt'       'quit'  none
//
// The type says text, but the bytes are binary: they are never converted and never NUL-terminated. Every
// event is sent to the application with the signature 'RBJT'.
//
// Every operation returns 0 for success or one of the platform's 16-bit error codes, widened to 32 bits. A
// channel keeps no state except the address. One exchange at a time.
#pragma once

#include <Carbon/Carbon.h>

#include <cstdint>
#include <memory>

#include "serialization/ByteBlock.h"
#include "serialization/CPPByteArray.h"

namespace dovrel {

namespace serverEvent {
constexpr AEEventClass kBufferClass = 'BUFF';
constexpr AEEventID kData = 'data';
constexpr AEEventID kWakeClient = 'waCl';
constexpr char kWakeText[] = "startPos";  ///< sent without its terminating NUL
constexpr uint32_t kWakeTextSize = sizeof kWakeText - 1;
/// Ticks per second.
constexpr uint32_t kTicksPerSecond = 60;
/// Time-out of a data exchange in ticks, about 167 seconds.
constexpr SInt32 kDataTimeOutTicks = 10000;
/// Time-out of each event of a handshake in milliseconds, and the number of events.
constexpr uint32_t kWakeTimeOutMs = 1000;
constexpr uint32_t kWakeAttempts = 5;
constexpr long kQuitTimeOutTicks = 100;
}  // namespace serverEvent

class IPC_via_AE {
  public:
    IPC_via_AE(const IPC_via_AE&) = delete;
    IPC_via_AE& operator=(const IPC_via_AE&) = delete;
    virtual ~IPC_via_AE();

    /// Creates an event to the server; the caller disposes of it. After an error `*event` is a
    /// null descriptor.
    int32_t CreateEvent(AEEventClass eventClass, AEEventID eventID, AppleEvent* event) const;

    /// Copies `length` bytes into the event as its direct parameter.
    int32_t PutData(AppleEvent* event, const uint8_t* bytes, uint32_t length) const;

    /// Copies the event's direct parameter into a new buffer. The buffer is null and the length 0 after an
    /// error, and also for an empty parameter, which is not an error. Returns errAEDescNotFound if the event
    /// has no direct parameter, and errAECorruptData if the size of the parameter changes while it is read.
    int32_t GetData(const AppleEvent* event, std::unique_ptr<uint8_t[]>& buffer, uint32_t& length) const;

    /// Does the same, but in the block of `spare` if the parameter fits into it (isReusable). Frees it otherwise.
    int32_t GetData(const AppleEvent* event, ByteBlock spare, std::unique_ptr<uint8_t[]>& buffer,
                    uint32_t& length) const;

    /// Does the same for an array, which is empty where the buffer would be null.
    int32_t GetData(const AppleEvent* event, CPPByteArray& array) const;

  protected:
    /// Throws std::bad_alloc.
    IPC_via_AE();

  private:
    template <class Allocate>
    static OSErr readDirectParameter(const AppleEvent* event, const Allocate& allocate);

    AEAddressDesc target_ = {typeNull, nullptr};
};

}  // namespace dovrel
