// posCallMethod, through the exported functions of the bundle, to the development server's class Echo.
//
// DOVREL_BUNDLE and POS_SYSTEM_ROOT say where the bundle and the installation are, as scripts/in-root sets them.
#include <dirent.h>
#include <dlfcn.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include "Peer.h"
#include "UnixSockets.h"
#include "dovrel/pos.h"

namespace dovrel::benchmarks {

namespace {

constexpr char kServer[] = "/Library/Application Support/Tessilor/pos/Merrowd.app/Contents/MacOS/Merrowd";

std::string variable(const char* name) {
    const char* const value = getenv(name);
    if (value == nullptr) throw std::runtime_error(std::string(name) + " is not set");
    return value;
}

// The functions of the bundle, which is loaded once and stays loaded.
class Library {
  public:
    Library() : handle_(dlopen((variable("DOVREL_BUNDLE") + "/Contents/MacOS/Dovrel").c_str(), RTLD_NOW)) {
        if (handle_ == nullptr) throw std::runtime_error(dlerror());
        find(InitializePOS, "InitializePOS");
        find(TerminatePOS, "TerminatePOS");
        find(posRegisterApplicationWithClasses, "posRegisterApplicationWithClasses");
        find(posUnregisterApplication, "posUnregisterApplication");
        find(posInstantiateObject, "posInstantiateObject");
        find(posCallMethod, "posCallMethod");
        find(posDeleteDLLHeapData, "posDeleteDLLHeapData");
        find(posFreeDllHeapData, "posFreeDllHeapData");
    }

    decltype(&::InitializePOS) InitializePOS;
    decltype(&::TerminatePOS) TerminatePOS;
    decltype(&::posRegisterApplicationWithClasses) posRegisterApplicationWithClasses;
    decltype(&::posUnregisterApplication) posUnregisterApplication;
    decltype(&::posInstantiateObject) posInstantiateObject;
    decltype(&::posCallMethod) posCallMethod;
    decltype(&::posDeleteDLLHeapData) posDeleteDLLHeapData;
    decltype(&::posFreeDllHeapData) posFreeDllHeapData;

  private:
    template <class Function>
    void find(Function& function, const char* name) {
        function = reinterpret_cast<Function>(dlsym(handle_, name));
        if (function == nullptr) throw std::runtime_error(dlerror());
    }

    void* handle_;
};

const Library& library() {
    static const Library library;
    return library;
}

// A result, freed when the next one takes its place.
class Result {
  public:
    Result() = default;
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
    ~Result() { replace(nullptr); }

    void replace(uint8_t* block) {
        library().posDeleteDLLHeapData(block_);
        block_ = block;
    }

  private:
    uint8_t* block_ = nullptr;
};

void expect(uint32_t status, const char* function) {
    if (status != POS_OK) throw std::runtime_error(std::string(function) + " failed");
}

class DovrelClient : public Client {
  public:
    DovrelClient() {
        char echoClass[POS_IDENTIFIER_SIZE] = "Echo";
        void* classId = echoClass;
        expect(library().InitializePOS(), "InitializePOS");
        expect(
            library().posRegisterApplicationWithClasses("Benchmark", &classId, 1, nullptr, 0, &application_),
            "posRegisterApplicationWithClasses");
        expect(library().posInstantiateObject(application_, &classId, &object_), "posInstantiateObject");
    }
    ~DovrelClient() override {
        library().posFreeDllHeapData(object_);
        library().posUnregisterApplication(application_);
        library().TerminatePOS();
    }

    Bytes call(Bytes request) override {
        static thread_local Result result;
        result.replace(nullptr);
        uint8_t* block = nullptr;
        uint32_t length = 0;
        auto* const argument = reinterpret_cast<uint8_t*>(const_cast<char*>(request.data));
        expect(library().posCallMethod(application_, &object_, "echo", argument,
                                       static_cast<uint32_t>(request.size), &block, &length),
               "posCallMethod");
        result.replace(block);
        return {reinterpret_cast<const char*>(block), length};
    }

  private:
    uint32_t application_ = 0;
    void* object_ = nullptr;
};

bool accepts(const std::filesystem::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof address.sun_path) return false;
    std::strcpy(address.sun_path, path.c_str());
    const Socket connection(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    return connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

// Whether the server of this root listens. A host that asked before would launch another one.
bool serverListens(const std::string& root) {
    std::error_code failed;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root + "/tmp", failed)) {
        if (entry.is_socket(failed) && accepts(entry.path())) return true;
    }
    return false;
}

// Runs beside the server, because the server's own program does not say when it is ready.
void reportReadiness(const std::string& root, pid_t server, const std::function<void()>& ready) {
    while (getppid() == server) {
        if (serverListens(root)) return ready();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void serve(const std::string&, const std::function<void()>& ready) {
    const std::string root = variable("POS_SYSTEM_ROOT");
    const std::string program = root + kServer;
    const pid_t server = getpid();
    if (fork() == 0) {
        reportReadiness(root, server, ready);
        _exit(EXIT_SUCCESS);
    }
    execl(program.c_str(), program.c_str(), nullptr);
    throw systemError(program);
}

std::unique_ptr<Client> connect(const std::string&) {
    return std::make_unique<DovrelClient>();
}

}  // namespace

const Peer kPeer = {kAnySize, Threads::together, false, serve, connect};

}  // namespace dovrel::benchmarks
