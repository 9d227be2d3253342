#include "Caller.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <string>

namespace dovrel::benchmarks {

Caller::Caller(size_t size) : request_(size) {
    unsigned value = 1;
    for (char& byte : request_) {
        value = value * 1103515245 + 12345;
        byte = static_cast<char>(value >> 16);
    }
}

double Caller::time(const std::function<Bytes(Bytes)>& call) {
    numberRequest();
    const auto begin = std::chrono::steady_clock::now();
    const Bytes reply = call({request_.data(), request_.size()});
    const auto end = std::chrono::steady_clock::now();
    if (reply.size != request_.size()) {
        throw std::runtime_error("a reply has " + std::to_string(reply.size) + " bytes, its request " +
                                 std::to_string(request_.size()));
    }
    if (std::memcmp(reply.data, request_.data(), reply.size) != 0)
        throw std::runtime_error("a reply differs from its request");
    return std::chrono::duration<double, std::nano>(end - begin).count();
}

// At both ends, so that the reply to an earlier request is noticed.
void Caller::numberRequest() {
    ++number_;
    const size_t count = std::min(sizeof number_, request_.size());
    std::memcpy(request_.data(), &number_, count);
    std::memcpy(request_.data() + request_.size() - count, &number_, count);
}

}  // namespace dovrel::benchmarks
