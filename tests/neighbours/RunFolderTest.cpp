// Foreign things in the places of the server's endpoint, and hosts that meet them: each call ends, nothing else is
// touched, and when the obstacle is gone the next host is served.
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "portability/posix/FileDescriptor.h"
#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OtherHost.h"
#include "tests/support/NeedsRoot.h"

namespace dovrel::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

constexpr uid_t kOtherUser = 65534;

// The longest wait that pos.h states for a server that cannot be launched is 50 s.
constexpr std::chrono::seconds kLongestLaunch{100};

// Puts something at a path where there is nothing.
struct Obstacle {
    const char* name;
    void (*put)(const fs::path& path);
};

std::ostream& operator<<(std::ostream& stream, const Obstacle& obstacle) {
    return stream << obstacle.name;
}

fs::path victim(const fs::path& path) {
    return path.parent_path().parent_path() / "victim";
}

void putLinkToAFile(const fs::path& path) {
    std::ofstream(victim(path)) << "precious";
    fs::create_symlink(victim(path), path);
}

void putLinkToNothing(const fs::path& path) {
    fs::create_symlink("/nothing/here", path);
}

void putLinkToItself(const fs::path& path) {
    fs::create_symlink(path.filename(), path);
}

void putFifo(const fs::path& path) {
    EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
}

void putFile(const fs::path& path) {
    std::ofstream(path) << "ordinary";
}

void putFolder(const fs::path& path) {
    fs::create_directory(path);
    putFile(path / "inside");
}

// A socket whose owner never accepts a connection. The socket stays open until the process ends.
void putSocket(const fs::path& path) {
    static std::vector<portability::FileDescriptor> sockets;
    sockets.emplace_back(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const fs::path before = fs::current_path();
    fs::current_path(path.parent_path());  // the whole path can be too long for an address
    path.filename().string().copy(address.sun_path, sizeof address.sun_path - 1);
    EXPECT_EQ(bind(sockets.back().get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(sockets.back().get(), 0), 0);
    fs::current_path(before);
}

void putFileOfAnotherUser(const fs::path& path) {
    putFile(path);
    if (geteuid() == 0) {
        EXPECT_EQ(lchown(path.c_str(), kOtherUser, kOtherUser), 0);
    }
}

void putLinkOfAnotherUser(const fs::path& path) {
    putLinkToAFile(path);
    if (geteuid() == 0) {
        EXPECT_EQ(lchown(path.c_str(), kOtherUser, kOtherUser), 0);
    }
}

const Obstacle kObstacles[] = {{"LinkToAFile", putLinkToAFile},
                               {"LinkToNothing", putLinkToNothing},
                               {"LinkToItself", putLinkToItself},
                               {"Fifo", putFifo},
                               {"File", putFile},
                               {"Folder", putFolder},
                               {"ForeignSocket", putSocket},
                               {"FileOfAnotherUser", putFileOfAnotherUser},
                               {"LinkOfAnotherUser", putLinkOfAnotherUser}};

class RunFolder : public EndToEnd, public testing::WithParamInterface<Obstacle> {
  protected:
    fs::path folder() const { return root_.path() + "/tmp/pos-events-" + std::to_string(geteuid()); }

    // Returns the socket or the lock of the running server.
    fs::path endpointFile(const std::string& extension) const {
        for (const auto& entry : fs::directory_iterator(folder())) {
            if (entry.path().extension() == extension) return entry.path();
        }
        ADD_FAILURE() << "there is no " << extension;
        return folder() / "none";
    }

    // Opens a session and registers. Returns whether both ended within the time; whether they succeed is
    // another question.
    bool endsInTime() {
        Console console;  // for the alerts
        const auto start = steady_clock::now();
        library_.InitializePOS();
        uint32_t application = 0;
        host_.registerApplication(application);
        library_.TerminatePOS();
        console.stop();
        return steady_clock::now() - start < kLongestLaunch;
    }

    bool isServed() {
        library_.InitializePOS();
        uint32_t application = 0;
        const bool isRegistered = host_.registerApplication(application) == POS_OK;
        const bool isAnswered = isRegistered && host_.command(application, "ping").status == POS_OK;
        library_.TerminatePOS();
        return isAnswered;
    }

    void expectUntouched(const fs::path& path) const {
        if (fs::exists(victim(path))) {
            EXPECT_EQ(readFile(victim(path)), "precious");
            fs::remove(victim(path));
        }
    }

    void expectServiceWithout(const fs::path& path) {
        expectUntouched(path);
        fs::remove_all(path);
        EXPECT_TRUE(isServed());
        EXPECT_EQ(root_.servers().size(), 1u);
    }
};

TEST_P(RunFolder, ObstacleInPlaceOfTheFolder_EndsEachCallAndGoesWithIt) {
    GetParam().put(folder());
    EXPECT_TRUE(endsInTime());
    root_.endServers(SIGTERM);
    expectServiceWithout(folder());
}

TEST_P(RunFolder, ObstacleInPlaceOfTheFilesBeforeTheLaunch_EndsEachCallAndGoesWithIt) {
    EXPECT_TRUE(isServed());
    const fs::path files[] = {endpointFile(".socket"), endpointFile(".lock")};
    root_.endServers(SIGTERM);
    for (const fs::path& file : files) {
        SCOPED_TRACE(file);
        fs::remove_all(file);
        GetParam().put(file);
        EXPECT_TRUE(endsInTime());
        root_.endServers(SIGTERM);
        expectServiceWithout(file);
        root_.endServers(SIGTERM);
    }
}

TEST_P(RunFolder, ObstacleInPlaceOfTheSocketOfARunningServer_LeavesItsHostsServed) {
    library_.InitializePOS();
    const uint32_t application = host_.registered();
    const fs::path socket = endpointFile(".socket");
    fs::remove(socket);
    GetParam().put(socket);
    for (int call = 0; call < 20; ++call)
        ASSERT_EQ(host_.command(application, "ping").status, POS_OK);
    expectUntouched(socket);
    fs::remove_all(socket);
    library_.TerminatePOS();
}

INSTANTIATE_TEST_SUITE_P(Each, RunFolder, testing::ValuesIn(kObstacles),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace dovrel::test
