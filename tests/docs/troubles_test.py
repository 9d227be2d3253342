"""Checks that docs/troubles.md explains every failure text of the library, and that the other texts exist."""
import re
import unittest

from installation import SOURCES

PAGE = (SOURCES / "docs/troubles.md").read_text()
# Texts that are not a failure: titles, buttons, and the line with the application's name.
NO_FAILURE = {"LANGUAGE", "ERROR_DLG_TITLE", "DLL_ERROR_DIALOG_TITLE", "DLL_MESSAGE_DIALOG_TITLE", "GENERAL_BUTTON_OK",
              "GENERAL_BUTTON_CANCEL", "GENERAL_BUTTON_RETRY", "DLL_ERROR_ERRORMESSAGEHEAD_PART1",
              "DLL_ERROR_ERRORMESSAGEHEAD_PART2"}
# The folders whose sources contain the texts of the tables.
FOLDERS = ["server", "platform", "InterProcessCommunication", "portability", "ui", "client"]


def words(text):
    return " ".join(text.replace("SDNL", " ").split())


def failure_texts():
    texts = (SOURCES / "resources/MultiLanguageTexts.mls").read_bytes().decode("mac_roman")
    english = texts.split("//LANGUAGE\nSTR:English\n")[1].split("//LANGUAGE\n")[0]
    return {key: words(text) for key, text in re.findall(r"^//(\w+)\nSTR:(.*)$", english, re.MULTILINE) if key not in NO_FAILURE}


def quotations():
    blocks = re.findall(r"(?:^>.*\n)+", PAGE, re.MULTILINE)
    return [words(re.sub(r"^> ?", "", block, flags=re.MULTILINE)) for block in blocks]


class Troubles(unittest.TestCase):
    def test_EveryFailureTextOfTheLibrary_IsOnThePageExactlyOnce(self):
        self.assertGreater(len(failure_texts()), 10)
        self.assertEqual(sorted(quotations()), sorted(failure_texts().values()))

    def test_EveryQuotation_IsFollowedByCauseAndWayOut(self):
        self.assertEqual(len(re.findall(r"(?:^>.*\n)+\n- Cause: .+\n(?:  .+\n)*- Way out: .+\n", PAGE, re.MULTILINE)), len(quotations()))

    def test_OtherTexts_AreInTheSources(self):
        sources = "".join(path.read_text(errors="replace") for folder in FOLDERS for path in (SOURCES / folder).rglob("*")
                          if path.suffix in {".cpp", ".mm", ".h"})
        # The compiler joins texts that follow each other.
        sources = re.sub(r'"\s*\n\s*"', "", sources)
        rows = re.findall(r"^\| `([^`]+)` \|", PAGE.split("## Messages of the server")[1].split("## Without a text")[0], re.MULTILINE)
        self.assertGreater(len(rows), 8)
        for text in rows:
            self.assertIn(text, sources)


if __name__ == "__main__":
    unittest.main()
