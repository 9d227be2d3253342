// Every error code of a method, with a text and without one.
#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

constexpr int kLastCode = 200;

// The class has a method for each code: "plain7" fails with code 7, "text7" also has a text.
std::string classWithErrors() {
    std::string methods;
    std::string errors;
    for (int code = 1; code <= kLastCode; ++code) {
        const std::string number = std::to_string(code);
        methods += (methods.empty() ? "plain" : ", plain") + number + ", text" + number;
        errors += setting("plain" + number + ".errorCode", code);
        errors += setting("text" + number + ".errorCode", code);
        errors += setting("text" + number + ".errorText", "The text of " + number + ".");
    }
    return setting("CLASS", "Errors") + setting("methods", methods) + errors;
}

TEST_F(InSession, CallWithEachErrorCode_FailsWithClearedOutputsAndTheNextCallSucceeds) {
    root_.configure(classWithErrors());
    const uint32_t application = host_.registered({"Errors"});
    ObjectId errors = host_.instantiate(application, "Errors");
    ASSERT_TRUE(errors.isThere());
    const Console console;
    for (int code = 1; code <= kLastCode; ++code) {
        for (const char* const kind : {"plain", "text"}) {
            SCOPED_TRACE(kind + std::to_string(code));
            const Answered answered =
                host_.call(application, errors, (kind + std::to_string(code)).c_str(), "x");
            EXPECT_EQ(answered.status, POS_FAILURE);
            EXPECT_EQ(answered.bytes, "");
            EXPECT_EQ(host_.command(application, "ping", "next").bytes, "next");
        }
    }
}

}  // namespace
}  // namespace dovrel::test
