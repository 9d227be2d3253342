// DecimalComma: while it exists, this process writes numbers with a comma, as German hosts do: "1,5".
#pragma once

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

/// Compiles the locale, because a small system has no locale with a comma. Fails the test if that fails.
class DecimalComma {
  public:
    DecimalComma() {
        folder_.write("comma.txt",
                      "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
        // localedef warns that the other categories are missing, and then exits with 1.
        const std::string compile = "localedef --quiet --force --inputfile='" + folder_.path("comma.txt") +
                                    "' '" + folder_.path("comma") + "' >/dev/null 2>&1";
        [[maybe_unused]] const int status = std::system(compile.c_str());
        setenv("LOCPATH", folder_.path().c_str(), 1);
        EXPECT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr) << "localedef has made no locale";
        EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    }
    ~DecimalComma() {
        std::setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;

  private:
    const TemporaryFolder folder_;
};

}  // namespace dovrel::test
