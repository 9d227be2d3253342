// sd-bus, peer to peer: method calls over a local socket, without a bus in between.
#include <sys/socket.h>
#include <systemd/sd-bus.h>

#include <cstring>

#include "Peer.h"
#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

constexpr char kPath[] = "/echo";
constexpr char kInterface[] = "calls.Echo";
constexpr char kMethod[] = "Echo";
constexpr uint64_t kPatience = 60'000'000;  // microseconds

void expect(int result, const char* function) {
    if (result < 0) throw std::runtime_error(std::string(function) + ": " + std::strerror(-result));
}

struct BusDeleter {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, BusDeleter>;

struct MessageDeleter {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageDeleter>;

// Takes the socket.
Bus busOn(Socket connection) {
    sd_bus* made = nullptr;
    expect(sd_bus_new(&made), "sd_bus_new");
    Bus bus(made);
    expect(sd_bus_set_fd(made, connection.get(), connection.get()), "sd_bus_set_fd");
    connection.release();
    return bus;
}

class BusClient : public Client {
  public:
    explicit BusClient(const std::string& folder) : bus_(busOn(connectToServer(folder, SOCK_STREAM))) {
        expect(sd_bus_start(bus_.get()), "sd_bus_start");
    }

    Bytes call(Bytes request) override {
        static thread_local Message reply;
        reply.reset();
        sd_bus_message* made = nullptr;
        expect(sd_bus_message_new_method_call(bus_.get(), &made, nullptr, kPath, kInterface, kMethod),
               "sd_bus_message_new_method_call");
        const Message message(made);
        expect(sd_bus_message_append_array(made, 'y', request.data, request.size),
               "sd_bus_message_append_array");
        sd_bus_message* received = nullptr;
        expect(sd_bus_call(bus_.get(), made, kPatience, nullptr, &received), "sd_bus_call");
        reply.reset(received);
        const void* bytes = nullptr;
        size_t size = 0;
        expect(sd_bus_message_read_array(received, 'y', &bytes, &size), "sd_bus_message_read_array");
        return {static_cast<const char*>(bytes), size};
    }

  private:
    Bus bus_;
};

int echo(sd_bus_message* call, void*, sd_bus_error*) {
    const void* bytes = nullptr;
    size_t size = 0;
    int result = sd_bus_message_read_array(call, 'y', &bytes, &size);
    if (result < 0) return result;
    sd_bus_message* made = nullptr;
    result = sd_bus_message_new_method_return(call, &made);
    if (result < 0) return result;
    const Message reply(made);
    result = sd_bus_message_append_array(made, 'y', bytes, size);
    return result < 0 ? result : sd_bus_send(nullptr, made, nullptr);
}

const sd_bus_vtable kVtable[] = {SD_BUS_VTABLE_START(0), SD_BUS_METHOD(kMethod, "ay", "ay", echo, 0),
                                 SD_BUS_VTABLE_END};

// Until the client has gone.
void serveBus(int connection) {
    sd_id128_t identifier;
    expect(sd_id128_randomize(&identifier), "sd_id128_randomize");
    const Bus bus = busOn(Socket(dup(connection)));
    expect(sd_bus_set_server(bus.get(), 1, identifier), "sd_bus_set_server");
    expect(sd_bus_set_anonymous(bus.get(), 1), "sd_bus_set_anonymous");
    expect(sd_bus_add_object_vtable(bus.get(), nullptr, kPath, kInterface, kVtable, nullptr),
           "sd_bus_add_object_vtable");
    expect(sd_bus_start(bus.get()), "sd_bus_start");
    for (;;) {
        const int result = sd_bus_process(bus.get(), nullptr);
        if (result < 0 || (result == 0 && sd_bus_wait(bus.get(), UINT64_MAX) < 0)) return;
    }
}

void serve(const std::string& folder, const std::function<void()>& ready) {
    serveConnections(folder, SOCK_STREAM, ready, serveBus);
}

std::unique_ptr<Client> connect(const std::string& folder) {
    return std::make_unique<BusClient>(folder);
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::inTurn, false, serve, connect};

}  // namespace dovrel::benchmarks
