// ExchangeLog: the server's log, a text file that shows every exchange between a host and the server in
// readable form.
//
//     2026-11-15 18:19:00.123 #7 call method, from process 4711
//         > 103 session identifier = 65537
//         > 107 method name = "echo"
//         > 110 argument data = 5 bytes: 68 65 6C 6C 6F "hello"
//     2026-11-15 18:19:00.124 #7 answered
//         < 111 result data = 5 bytes: 68 65 6C 6C 6F "hello"
//
// The file is created when the first line is written. Each line is written to the file before the call
// returns, so nothing is lost if the server is killed. If the file cannot be opened or is not a regular file,
// the log goes to standard error.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "server/MethodResult.h"

namespace merrowd {

class ExchangeLog {
  public:
    /// `path` is passed to `open` unchanged. New lines are appended to an existing file.
    explicit ExchangeLog(std::string path);

    /// Writes a line with the time before it. Line feeds in the text become blanks, and Mac Roman becomes UTF-8.
    void note(const std::string& text);

    /// Write the request and the reply of an exchange. Each request has the next number; a reply has the
    /// number of the last request. An exchange may have no reply.
    void request(const std::string& title, const CPPByteArray& request);
    void reply(const std::string& title, const CPPByteArray& reply);

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
