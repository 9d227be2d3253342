// The first use of Foundation in a process. Private to the layer and to the bundle's second module.
#pragma once

namespace portability {

/// Uses the classes with which every use of Foundation begins. GNUstep's classes prepare themselves when they are
/// used first, and two threads that do this at the same time can crash. So call it before a second thread uses
/// Foundation. Failures are ignored.
void useFoundation() noexcept;

}  // namespace portability
