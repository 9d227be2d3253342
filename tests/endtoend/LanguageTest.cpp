// The language of the texts that the user reads: a host in a user's session, the installed library, and a
// failure that the server reports. There is no display here, so the alert becomes a line in the system log.
#include <cstdlib>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

constexpr char kGermanBody[] =
    "Das Programm \"End to end\" konnte einen Vorgang nicht ausführen:\r\r"
    "Das Gerät fehlt.\r\r"
    "Der Vorgang wurde abgebrochen. Bitte versuchen Sie es noch einmal. Wenn das Problem bestehen bleibt, "
    "beenden Sie alle Programme und starten Sie den Computer neu. Hilft auch das nicht, wenden Sie sich "
    "bitte an den Kundendienst des Programmherstellers.";

constexpr char kFrenchBody[] =
    "L’application \"End to end\" n’a pas pu effectuer une opération\u00A0:\r\r"
    "Das Gerät fehlt.\r\r"
    "L’opération a été interrompue. Veuillez réessayer. Si le problème persiste, quittez toutes les "
    "applications et redémarrez votre ordinateur. Si cela ne suffit pas, adressez-vous à l’assistance de la "
    "société qui édite l’application.";

constexpr char kEnglishBody[] =
    "The application \"End to end\" could not carry out an operation:\r\r"
    "Das Gerät fehlt.\r\r"
    "The operation has been stopped. Please try it again. If the problem persists, quit all applications "
    "and restart your computer. If that does not help, contact the support department of the application’s "
    "vendor.";

class Language : public EndToEnd {
  protected:
    ~Language() override { library_.TerminatePOS(); }

    // Expects what a user with that locale reads when a command fails. The server's own message, in Mac
    // Roman, is the same in all locales.
    void expectFailureIn(const char* locale, const char* body) {
        setenv("LC_ALL", locale, 1);
        library_.InitializePOS();
        const uint32_t application = host_.registered();
        ServerControl::send(refusal("execute command", 28, "Das Ger\x8At fehlt."));
        Console console;
        EXPECT_EQ(host_.command(application, "ping").status, POS_FAILURE);
        console.stop();
        EXPECT_EQ(countAlerts(console, body), 1u) << console.systemLog();
        EXPECT_EQ(alerts(console), 1u);
    }
};

TEST_F(Language, AFailureInAGermanSession_IsReadInGerman) {
    expectFailureIn("de_DE.UTF-8", kGermanBody);
}

TEST_F(Language, AFailureInAFrenchSession_IsReadInFrench) {
    expectFailureIn("fr_FR.UTF-8", kFrenchBody);
}

TEST_F(Language, AFailureInAJapaneseSession_IsReadInEnglish) {
    expectFailureIn("ja_JP.UTF-8", kEnglishBody);
}

}  // namespace
}  // namespace dovrel::test
