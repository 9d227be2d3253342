// The server's log: a text file to which each exchange is written in readable form, for whoever wants to see
// what a host and the server say to each other.
//
//     2026-11-15 18:19:00.123 #7 call method, from process 4711
//         > 103 session identifier = 65537
//         > 107 method name = "echo"
//         > 110 argument data = 5 bytes: 68 65 6C 6C 6F "hello"
//     2026-11-15 18:19:00.124 #7 answered
//         < 111 result data = 5 bytes: 68 65 6C 6C 6F "hello"
//
// The file is made when the first line is written, and each line is in the file when the call returns, so
// that nothing is lost when the server is killed. A log that cannot be written goes to standard error
// instead.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "server/Answer.h"

namespace merrowd {

class ExchangeLog {
  public:
    /// `path` is that of the file in the language's file calls; lines are added to what is there.
    explicit ExchangeLog(std::string path);

    /// Writes a line with the time in front. Line feeds in it become blanks, Mac Roman becomes UTF-8.
    void note(const std::string& text);

    /// The beginning of an exchange, and its end, when it has one. Numbers exchanges.
    void request(const std::string& title, const CPPByteArray& request);
    void answer(const std::string& title, const CPPByteArray& answer);

  private:
    void write(const std::string& lines);
    std::FILE* stream();

    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    const std::string path_;
    std::unique_ptr<std::FILE, Closer> file_;
    bool unwritable_ = false;
    uint64_t exchange_ = 0;
};

}  // namespace merrowd
