// Names and messages in UTF-8 and in Mac Roman, on their way from host and server
// to the text that the user reads.
#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

class Encodings : public EndToEnd {
  protected:
    ~Encodings() override { library_.TerminatePOS(); }

    /// Runs a command of an application of that name that fails with that text from the server. Expects both
    /// name and text to be readable in the alert.
    void expectReadable(const std::string& name, const std::string& text) {
        library_.InitializePOS();
        uint32_t application = 0;
        ASSERT_EQ(host_.registerApplication(application, {}, {}, name), POS_OK);
        ServerControl::send(refusal("execute command", 28, text));
        Console console;
        EXPECT_EQ(host_.command(application, "ping").status, POS_FAILURE);
        console.stop();
        const std::string body =
            texts_.failureBody("Größenprüfer", "Das Gerät fehlt.", "DLL_ERROR_UNRECOVERABLE_ERROR");
        EXPECT_EQ(countAlerts(console, body), 1u) << console.systemLog();
    }
};

TEST_F(Encodings, NameAndMessageInUTF8_AreReadableInTheAlert) {
    expectReadable("Größenprüfer", "Das Gerät fehlt.");
}

TEST_F(Encodings, NameAndMessageInMacRoman_AreReadableInTheAlert) {
    expectReadable(
        "Gr\x9A\xA7"
        "enpr\x9F"
        "fer",
        "Das Ger\x8At fehlt.");
}

TEST_F(Encodings, NameInUTF8AndMessageInMacRoman_AreReadableInTheAlert) {
    expectReadable("Größenprüfer", "Das Ger\x8At fehlt.");
}

}  // namespace
}  // namespace dovrel::test
