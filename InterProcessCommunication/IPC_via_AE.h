// IPC_via_AE: the Apple event channel between a client and the server, and the codes of its events.
//
//   use                event class  id      direct parameter ('----', type 'TEXT')
//   data exchange      'BUFF'       'data'  the bytes of a transfer object, and of the answer in the reply
//   wake-up handshake  'BUFF'       'waCl'  the 8 bytes "startPos"
//   quit the server    'aevt'       'quit'  none
//
// Although the type says text, the bytes are binary: they are put and read as they are, never converted or
// terminated. Every event goes to the application with the signature 'RBJT'.
//
// Results of all operations are the platform's 16-bit error codes, widened; 0 is success. A channel keeps no
// state but the address; one exchange at a time.
#pragma once

#include <Carbon/Carbon.h>

#include <cstdint>
#include <memory>

namespace dovrel {

namespace serverEvent {
constexpr AEEventClass kBufferClass = 'BUFF';
constexpr AEEventID kData = 'data';
constexpr AEEventID kWakeClient = 'waCl';
constexpr char kWakeText[] = "startPos";  ///< sent without its terminating zero
constexpr uint32_t kWakeTextSize = sizeof kWakeText - 1;
/// Ticks in a second.
constexpr uint32_t kTicksPerSecond = 60;
/// How long an exchange waits for the server, about 167 seconds.
constexpr SInt32 kDataTimeOutTicks = 10000;
/// How long each event of a handshake waits, and how many are sent.
constexpr uint32_t kWakeTimeOutMs = 1000;
constexpr uint32_t kWakeAttempts = 5;
constexpr long kQuitTimeOutTicks = 100;
}  // namespace serverEvent

class IPC_via_AE {
  public:
    IPC_via_AE(const IPC_via_AE&) = delete;
    IPC_via_AE& operator=(const IPC_via_AE&) = delete;
    virtual ~IPC_via_AE();

    /// An event to the server, which the caller disposes of. After an error `event` is null.
    int32_t CreateEvent(AEEventClass eventClass, AEEventID eventID, AppleEvent* event) const;

    /// Copies the bytes into the event as its direct parameter.
    int32_t PutData(AppleEvent* event, const uint8_t* bytes, uint32_t length) const;

    /// A copy of the event's direct parameter. Nothing and length 0 for an empty parameter, which is no
    /// error, and after an error; errAEDescNotFound when the event has no direct parameter, errAECorruptData
    /// if its size changes while it is read.
    int32_t GetData(const AppleEvent* event, std::unique_ptr<uint8_t[]>& buffer, uint32_t& length) const;

  protected:
    IPC_via_AE();

  private:
    AEAddressDesc target_ = {typeNull, nullptr};
};

}  // namespace dovrel
