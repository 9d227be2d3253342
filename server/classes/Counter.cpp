// Counter: a sum that starts at 0. Numbers are 4 bytes, least significant byte first.
//
//   method   argument   result
//   add      a number   the sum after adding the number; refused if it would not fit into 32 bits,
//                       and then nothing is added
//   value    none       the sum
//   reset    none       none; sets the sum to 0
#include <limits>

#include "server/BuiltInClass.h"

namespace merrowd {
namespace {

class Counter {
  public:
    CPPByteArray add(CPPByteArray argument) {
        const uint32_t number = parseNumber(argument);
        if (number > std::numeric_limits<uint32_t>::max() - sum_) {
            throw Refusal{refusalCode::kPOSMethodExecution, "the sum does not fit in 32 bits"};
        }
        sum_ += number;
        return numberToBytes(sum_);
    }

    CPPByteArray value(CPPByteArray argument) {
        requireNoArgument(argument);
        return numberToBytes(sum_);
    }

    CPPByteArray reset(CPPByteArray argument) {
        requireNoArgument(argument);
        sum_ = 0;
        return {};
    }

  private:
    uint32_t sum_ = 0;
};

const BuiltInClass<Counter> kCounter("Counter", {{"add", &Counter::add},
                                                 {"value", &Counter::value},
                                                 {"reset", &Counter::reset}});

}  // namespace
}  // namespace merrowd
