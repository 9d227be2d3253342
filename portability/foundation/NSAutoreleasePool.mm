#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include "portability/foundation/FoundationUse.h"

#undef NSAutoreleasePool

@implementation DovrelPool

+ (id)alloc {
    portability::beginFoundationUse();
    return class_createInstance(self, 0);
}

+ (Class)class {
    return self;
}

- (id)init {
    pool_ = [[NSAutoreleasePool alloc] init];
    return self;
}

- (void)release {
    [pool_ release];
    portability::endFoundationUse();
    object_dispose(self);
}

- (void)drain {
    [self release];
}

- (unsigned)autoreleaseCount {
    return [(NSAutoreleasePool*)pool_ autoreleaseCount];
}

@end
