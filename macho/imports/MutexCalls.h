// std::mutex of an image, which has the layout of macOS.
#pragma once

namespace dovrel::macho {

void platformMutexLock(void* mutex);
bool platformMutexTryLock(void* mutex);
void platformMutexUnlock(void* mutex);
void platformMutexDestroy(void* mutex);

}  // namespace dovrel::macho
