// Echo: returns its argument. For testing whether bytes of any value and number arrive unchanged.
#include "server/BuiltInClass.h"

namespace merrowd {
namespace {

class Echo {
  public:
    CPPByteArray echo(CPPByteArray argument) { return argument; }
};

const BuiltInClass<Echo> kEcho("Echo", {{"echo", &Echo::echo}});

}  // namespace
}  // namespace merrowd
