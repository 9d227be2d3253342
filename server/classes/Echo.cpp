// Echo: gives back what it gets. For trying whether bytes of any kind and number arrive as they were sent.
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
