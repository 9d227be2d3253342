// Digest: checksums of its argument.
//
//   method   argument    result
//   md5      any bytes   the MD5 (RFC 1321) of the argument as 32 lower-case hexadecimal digits
#include "platform/random/MD5.h"
#include "server/BuiltInClass.h"

namespace merrowd {
namespace {

class Digest {
  public:
    CPPByteArray md5(CPPByteArray argument) {
        dovrel::MD5 md5;
        md5.update(argument.data(), argument.getSize());
        const dovrel::MD5::Digest digest = md5.digest();
        return toBytes(dovrel::toLowerAscii(dovrel::bytesToHexText(digest.data(), digest.size())));
    }
};

const BuiltInClass<Digest> kDigest("Digest", {{"md5", &Digest::md5}});

}  // namespace
}  // namespace merrowd
