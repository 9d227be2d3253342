// The alert helper as a program: how it is started, what it refuses, and how it ends without a window.
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <memory>

#include "portability/alerts/helper/ExitCode.h"
#include "tests/portability/alerts/HelperProcess.h"
#include "tests/portability/alerts/HelperTest.h"
#include "tests/support/ChildProcess.h"

namespace alerthelper::test {
namespace {

using dovrel::test::ChildProcess;
using portability::AlertMessages;

class HelperProgramTest : public HelperTest {
  protected:
    /// Runs a shell command in which $0 is the program. Standard error goes to the file
    /// "errors", standard output to "output".
    int run(const std::string& command) {
        const std::string redirected =
            "exec >" + folder_.path("output") + " 2>" + folder_.path("errors") + "\n" + command;
        return ChildProcess({"sh", "-c", redirected, DOVREL_ALERT_HELPER}).wait();
    }

    std::string output() const { return folder_.read("output"); }
    std::string errors() const { return folder_.read("errors"); }

    std::unique_ptr<HelperProcess> start() const {
        return std::make_unique<HelperProcess>(folder_.path("log"));
    }

    /// Returns the exit code of a helper that receives these bytes and then, if
    /// requested, the end of the stream.
    int codeAfter(const std::string& bytes) {
        const auto helper = start();
        helper->sendBytes(bytes);
        EXPECT_EQ(helper->readLine(), "");
        return helper->wait();
    }
};

// A helper that a user starts by hand.

TEST_F(HelperProgramTest, StartedByHand_SaysWhatItIsAndFails) {
    EXPECT_EQ(run("exec \"$0\" 3<&-"), kWrongUse);
    EXPECT_NE(errors().find("dovrel-alert shows the alerts"), std::string::npos) << errors();
    EXPECT_EQ(output(), "");
}

TEST_F(HelperProgramTest, AnotherDescriptor3_IsTheSameAsNone) {
    for (const char* redirection : {"3</dev/null", "3<\"$0\"", "3>&1 | cat"}) {
        EXPECT_EQ(run(std::string("{ \"$0\"; echo $? >&2; } ") + redirection), 0);
        EXPECT_NE(errors().find("dovrel-alert shows the alerts"), std::string::npos) << redirection;
        EXPECT_NE(errors().find("\n2\n"), std::string::npos) << redirection << errors();
    }
}

TEST_F(HelperProgramTest, Help_SaysWhatItIs) {
    EXPECT_EQ(run("exec \"$0\" --help"), 0);
    EXPECT_NE(output().find("dovrel-alert shows the alerts"), std::string::npos) << output();
    EXPECT_EQ(errors(), "");
}

TEST_F(HelperProgramTest, Version_IsTheProjects) {
    EXPECT_EQ(run("exec \"$0\" --version"), 0);
    EXPECT_EQ(output(), "dovrel-alert " DOVREL_VERSION "\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(HelperProgramTest, OtherArguments_AreRefused) {
    for (const char* arguments :
         {"/etc/passwd", "--gapplication-service", "--display=:0", "\"\"", "--help --help", "--"}) {
        EXPECT_EQ(run(std::string("exec \"$0\" ") + arguments), kWrongUse) << arguments;
        EXPECT_EQ(output(), "") << arguments;
        EXPECT_NE(errors(), "") << arguments;
    }
}

TEST_F(HelperProgramTest, Program_IsNextToTheLibraryInTheBundle) {
    EXPECT_STREQ(DOVREL_ALERT_HELPER, DOVREL_BUNDLE "/Contents/MacOS/dovrel-alert");
}

// Requests that the helper refuses.

TEST_F(HelperProgramTest, WhatIsNotARequest_EndsIt) {
    for (const char* line : {"\n", "{}\n", "nonsense\n", "{\"event\":\"shown\"}\n", "\xff\n"})
        EXPECT_EQ(codeAfter(line), kBadMessage) << line;
}

TEST_F(HelperProgramTest, RequestThatIsFollowedByMore_EndsIt) {
    const std::string request = AlertMessages::compose(requestIn("English"));
    EXPECT_EQ(codeAfter(request + request), kBadMessage);
    EXPECT_EQ(codeAfter(request + "\n"), kBadMessage);
    EXPECT_EQ(codeAfter(request + "x"), kBadMessage);
}

TEST_F(HelperProgramTest, LineThatIsTooLong_EndsItBeforeItsEnd) {
    EXPECT_EQ(codeAfter(std::string(portability::kLongestAlertLine + 1, ' ')), kBadMessage);
}

TEST_F(HelperProgramTest, StreamThatEndsBeforeTheRequest_EndsIt) {
    const std::string request = AlertMessages::compose(requestIn("English"));
    for (const std::string& begin :
         {std::string(), request.substr(0, 10), request.substr(0, request.size() - 1)}) {
        const auto helper = start();
        helper->sendBytes(begin);
        helper->closeStream();
        EXPECT_EQ(helper->wait(), kBadMessage);
    }
}

TEST_F(HelperProgramTest, HostThatHasEnded_EndsItWithoutAWindow) {
    auto request = requestIn("English");
    request.host = fork();
    if (request.host == 0) _exit(0);
    ASSERT_EQ(waitpid(request.host, nullptr, 0), request.host);
    EXPECT_EQ(codeAfter(AlertMessages::compose(request)), kFinished);
}

// Without a window system.

TEST_F(HelperProgramTest, NoDisplay_EndsItSilently) {
    for (const char* display : {"", ":4095", "nonsense", "localhost:4095.7"}) {
        setenv("DISPLAY", display, 1);
        EXPECT_EQ(codeAfter(AlertMessages::compose(requestIn("English"))), kNotShown) << display;
    }
    EXPECT_EQ(folder_.read("log"), "");
}

TEST_F(HelperProgramTest, NoWaylandCompositor_EndsItSilently) {
    setenv("GDK_BACKEND", "wayland", 1);
    setenv("WAYLAND_DISPLAY", "not-there", 1);
    EXPECT_EQ(codeAfter(AlertMessages::compose(requestIn("English"))), kNotShown);
    EXPECT_EQ(folder_.read("log"), "");
}

// The X server accepts the connection and never replies, like a server that was stopped by a signal.
TEST_F(HelperProgramTest, WindowSystemThatDoesNotReply_DoesNotKeepItFromEndingWithItsHost) {
    constexpr int kFirstPort = 6000;
    const portability::FileDescriptor server(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    ASSERT_EQ(bind(server.get(), any, size), 0);
    ASSERT_EQ(listen(server.get(), 1), 0);
    ASSERT_EQ(getsockname(server.get(), any, &size), 0);
    setenv("DISPLAY", ("127.0.0.1:" + std::to_string(ntohs(address.sin_port) - kFirstPort)).c_str(), 1);

    const auto helper = start();
    helper->send(requestIn("English"));
    const portability::FileDescriptor connection(accept4(server.get(), nullptr, nullptr, SOCK_CLOEXEC));
    ASSERT_TRUE(static_cast<bool>(connection));
    char byte = 0;
    ASSERT_EQ(recv(connection.get(), &byte, 1, 0), 1);
    EXPECT_FALSE(helper->hasLine());
    helper->closeStream();
    EXPECT_EQ(helper->wait(), kFinished);
}

}  // namespace
}  // namespace alerthelper::test
