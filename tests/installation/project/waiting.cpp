// A host that registers, waits for a line of its standard input, and then uses the server.
#include <iostream>
#include <string>

#include "dovrel/pos.hpp"

int main() {
    constexpr pos::Identifier counter = pos::makeIdentifier("Counter");
    const pos::Session session;
    pos::Application application(session, "Waiting", {counter});
    pos::Object object = application.create(counter);
    const std::string two("\2\0\0\0", 4);
    std::cout << "sum: " << int{object.call("add", two).data()[0]} << std::endl;
    std::string line;
    std::getline(std::cin, line);
    std::cout << "sum: " << int{object.call("add", two).data()[0]} << std::endl;
}
