// Classes whose virtual tables are not emitted in a source of their own. Every translation unit that
// creates an object contains a copy, and this one creates objects. It is only compiled, for both
// systems, and never linked or run.
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "platform/GeneralEvent.h"
#include "platform/SystemEventUnregApp.h"
#include "platform/random/BaseRandom.h"
#include "platform/random/NumberGenerator.h"
#include "platform/synchronization/CriticalSection.h"
#include "platform/synchronization/Mutex.h"
#include "platform/synchronization/SynchronizationEvent.h"
#include "platform/trace/LogEntry.h"
#include "settings/Properties.h"

namespace {

using namespace dovrel;

struct AnyForwarder : POSTransferObjForwarder {
    POSTransferObj* ForwardTransferObj(POSTransferObj&) override { return nullptr; }
    void ConnectToPOS(uint32_t) override {}
    void CheckConnection() override {}
    CPPByteArray GetClientProcessID() override { return CPPByteArray(); }
};

struct AnyRandom : BaseRandom {
    void seed(uint32_t) override {}
    uint32_t nextBit() override { return 0; }
    uint32_t next32() override { return 0; }
};

struct AnyObject : SynchronizationObject {
    bool wait(int32_t) override { return true; }
};

struct AnyCriticalSection : CriticalSection {
    bool wait(int32_t) override { return true; }
    void enter() override {}
    void leave() override {}
};

struct AnyMutex : Mutex {
    bool wait(int32_t) override { return true; }
    bool lock(int32_t) override { return true; }
    bool unlock() override { return true; }
};

struct AnyEvent : SynchronizationEvent {
    bool wait(int32_t) override { return true; }
    void signal() override {}
    void reset() override {}
};

}  // namespace

void makeOneOfEach() {
    AnyForwarder forwarder;
    POSTransferObjTrader trader;
    AnyRandom random;
    AnyObject object;
    AnyCriticalSection section;
    AnyMutex mutex;
    AnyEvent event;
    NumberGenerator generator(1);
    GeneralEvent general;
    SystemEventUnregApp unregistered(1);
    LogEntry entry(0, "");
    Properties properties;
}
