// The runtime's pools, for code that calls Core Foundation only. Core Foundation of this layer is plain C++ and
// autoreleases nothing, so there is nothing to collect.
extern "C" {

void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);

void* objc_autoreleasePoolPush(void) {
    static char pool;
    return &pool;
}

void objc_autoreleasePoolPop(void* /*pool*/) {}
}
