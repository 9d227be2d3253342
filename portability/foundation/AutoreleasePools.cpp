// The functions of the Objective-C runtime for autorelease pools, for code that calls only Core Foundation.
// They do nothing, because this layer's Core Foundation is plain C++ and autoreleases nothing.
extern "C" {

void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);

void* objc_autoreleasePoolPush(void) {
    static char pool;
    return &pool;
}

void objc_autoreleasePoolPop(void* /*pool*/) {}
}
