// Compares Apple events to another process with a plain blocking exchange over a local stream socket, whose
// messages have an 8-byte length before the data. Both run alternately in one program. Client and server
// share one processor or have one each.
//
// An exchange is everything that a caller does. The client makes an event, fills it, sends it, reads the
// reply into its own memory, and disposes of both. The server copies the parameter and puts it into the
// reply. The plain exchange reads and writes the same bytes, with the same kind of buffers.

#include <CoreServices/CoreServices.h>
#include <benchmark/benchmark.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "ForkedServer.h"
#include "StreamMessages.h"
#include "portability/appleevents/EventLoop.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/transport/Endpoint.h"

namespace {

using portability::FileDescriptor;
using Clock = std::chrono::steady_clock;

constexpr OSType kSignature = 'BnCh';
constexpr size_t kLargestPayload = size_t{1} << 20;

// A system root of the benchmark's own, which exists as long as the benchmark runs.
class Places {
  public:
    Places() {
        char pattern[] = "/tmp/events-benchmark.XXXXXX";
        folder_ = mkdtemp(pattern);
        setenv("POS_SYSTEM_ROOT", folder_.c_str(), 1);
        std::filesystem::create_directory(folder_ / "tmp");  // for the endpoints
    }
    ~Places() { std::filesystem::remove_all(folder_); }

    const std::filesystem::path& folder() const { return folder_; }

  private:
    std::filesystem::path folder_;
};

Places& places() {
    static Places places;
    return places;
}

std::vector<char>& serverBuffer() {
    static std::vector<char> buffer(kLargestPayload);
    return buffer;
}

OSErr echo(const AppleEvent* event, AppleEvent* reply, SRefCon) {
    std::vector<char>& buffer = serverBuffer();
    Size size = 0;
    const OSErr error = AEGetParamPtr(event, keyDirectObject, typeChar, nullptr, buffer.data(),
                                      static_cast<Size>(buffer.size()), &size);
    if (error != noErr) return error;
    return AEPutParamPtr(reply, keyDirectObject, typeChar, buffer.data(), size);
}

void serveEvents(portability::EndpointClaim claim) {
    AEInstallEventHandler('BUFF', 'data', echo, SRefCon(), false);
    portability::runEventLoop(std::move(claim));
}

class EventClient {
  public:
    explicit EventClient(int serverProcessor) : server_(serverProcessor, [] { serveEvents(claim()); }) {
        AECreateDesc(typeApplSignature, &kSignature, sizeof kSignature, &address_);
        std::vector<char> byte(1);
        while (!exchange(byte, byte))
            usleep(1000);
    }
    ~EventClient() { AEDisposeDesc(&address_); }

    bool exchange(const std::vector<char>& request, std::vector<char>& answer) {
        AppleEvent event;
        AppleEvent reply;
        AECreateAppleEvent('BUFF', 'data', &address_, kAutoGenerateReturnID, kAnyTransactionID, &event);
        AEPutParamPtr(&event, keyDirectObject, typeChar, request.data(), static_cast<Size>(request.size()));
        OSStatus status = AESendMessage(&event, &reply, kAEWaitReply, 10000);
        Size size = 0;
        if (status == noErr) {
            status = AEGetParamPtr(&reply, keyDirectObject, typeChar, nullptr, answer.data(),
                                   static_cast<Size>(answer.size()), &size);
        }
        AEDisposeDesc(&event);
        AEDisposeDesc(&reply);
        return status == noErr && size == static_cast<Size>(request.size());
    }

    // Connections are cached by the name of the root. A different name for the same root makes the
    // next exchange connect again.
    void forgetConnection() {
        root_ += '/';
        setenv("POS_SYSTEM_ROOT", root_.c_str(), 1);
        if (root_.size() > 1000) root_ = places().folder().string();
    }

  private:
    static portability::EndpointClaim claim() {
        portability::EndpointClaim claim;
        portability::EndpointClaim::claim(kSignature, claim);
        return claim;
    }

    ForkedServer server_;
    AEAddressDesc address_{};
    std::string root_ = places().folder().string();
};

class StreamClient {
  public:
    explicit StreamClient(int serverProcessor)
        : listener_(listenAtPath()),
          server_(serverProcessor, [this] { serve(); }),
          connection_(connectToServer()) {}

    bool exchange(const std::vector<char>& request, std::vector<char>& answer) {
        uint64_t size = 0;
        return writeMessage(connection_.get(), request.data(), request.size()) &&
               readMessage(connection_.get(), answer, size) && size == request.size();
    }

    void forgetConnection() {
        connection_.reset();
        connection_ = connectToServer();
    }

  private:
    static sockaddr_un address() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, (places().folder() / "stream").c_str());
        return address;
    }

    static FileDescriptor listenAtPath() {
        const sockaddr_un at = address();
        unlink(at.sun_path);
        FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM, 0));
        bind(listener.get(), reinterpret_cast<const sockaddr*>(&at), sizeof at);
        listen(listener.get(), 16);
        return listener;
    }

    static FileDescriptor connectToServer() {
        const sockaddr_un at = address();
        FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM, 0));
        connect(connection.get(), reinterpret_cast<const sockaddr*>(&at), sizeof at);
        return connection;
    }

    void serve() const {
        for (;;) {
            const FileDescriptor peer(accept(listener_.get(), nullptr, nullptr));
            uint64_t size = 0;
            while (readMessage(peer.get(), serverBuffer(), size)) {
                if (!writeMessage(peer.get(), serverBuffer().data(), size)) break;
            }
        }
    }

    FileDescriptor listener_;
    ForkedServer server_;
    FileDescriptor connection_;
};

// Measures the microseconds of one exchange: the mean of several exchanges on an existing connection.
struct RoundTrip {
    template <class Client>
    double operator()(Client& client, const std::vector<char>& request, std::vector<char>& answer,
                      bool& good) const {
        const int count = request.size() >= kLargestPayload ? 20 : 200;
        const Clock::time_point begin = Clock::now();
        for (int i = 0; i < count; ++i)
            good = client.exchange(request, answer) && good;
        return std::chrono::duration<double, std::micro>(Clock::now() - begin).count() / count;
    }
};

// Measures the microseconds of the first exchange, including making the connection.
struct FirstCall {
    template <class Client>
    double operator()(Client& client, const std::vector<char>& request, std::vector<char>& answer,
                      bool& good) const {
        const Clock::time_point begin = Clock::now();
        client.forgetConnection();
        good = client.exchange(request, answer) && good;
        return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
    }
};

double computeMedian(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <class Measure>
void compare(benchmark::State& state, Measure measure) {
    places();
    pinTo(0);
    const int serverProcessor = static_cast<int>(state.range(1)) - 1;
    EventClient events(serverProcessor);
    StreamClient stream(serverProcessor);
    const std::vector<char> request(static_cast<size_t>(state.range(0)), 'x');
    std::vector<char> answer(request.size());
    std::vector<double> eventTimes;
    std::vector<double> streamTimes;
    bool good = true;
    for (auto _ : state) {
        eventTimes.push_back(measure(events, request, answer, good));
        streamTimes.push_back(measure(stream, request, answer, good));
        state.SetIterationTime(eventTimes.back() / 1e6);
    }
    if (!good) return state.SkipWithError("an exchange failed");
    state.counters["event_us"] = computeMedian(eventTimes);
    state.counters["stream_us"] = computeMedian(streamTimes);
    state.counters["ratio"] = computeMedian(eventTimes) / computeMedian(streamTimes);
}

void roundTrip(benchmark::State& state) {
    compare(state, RoundTrip());
}

void firstCall(benchmark::State& state) {
    compare(state, FirstCall());
}

void setUp(benchmark::internal::Benchmark* benchmark, const std::vector<int64_t>& sizes, int64_t iterations) {
    benchmark->ArgNames({"bytes", "processors"});
    for (const int64_t processors : {1, 2}) {
        for (const int64_t bytes : sizes)
            benchmark->Args({bytes, processors});
    }
    benchmark->Iterations(iterations)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(roundTrip)->Apply([](auto* benchmark) { setUp(benchmark, {64, 4096, 65536, 1 << 20}, 100); });
BENCHMARK(firstCall)->Apply([](auto* benchmark) { setUp(benchmark, {64}, 500); });

}  // namespace
