// A host in C++ that is linked with the library. It does the same as host/host.c: it registers with the
// server, uses a Digest object there to compute the MD5 of a file, and unregisters. On the way it also uses
// the other operations.
//
//     cpp_host FILE
//
// The digest is printed on a line of its own that begins with "digest: ".
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "dovrel/pos.hpp"

namespace {

constexpr pos::Identifier kDigest = pos::makeIdentifier("Digest");

void useServer(const std::string& file) {
    const pos::Session session;
    pos::Application application(session, "Dovrel example host", {kDigest});
    std::cout << "interface version: " << session.interfaceVersion() << '\n';
    std::cout << "server: " << application.run("version").text() << '\n';

    pos::Object digest = application.create(kDigest);
    std::cout << "digest: " << digest.call("md5", file).text() << '\n';
    digest.destroy();
    application.unregister();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: cpp_host FILE\n";
        return 2;
    }
    std::ifstream stream(argv[1], std::ios::binary);
    stream.peek();  // fails if the file cannot be read, for example a folder
    if (!stream.is_open() || stream.bad()) {
        std::cerr << "cpp_host: cannot read " << argv[1] << '\n';
        return 1;
    }
    std::ostringstream content;
    content << stream.rdbuf();
    try {
        useServer(content.str());
        return 0;
    } catch (const pos::Failure& failure) {
        std::cerr << "cpp_host: " << failure.what() << "; the alert, or the message above, says why\n";
        return 1;
    }
}
