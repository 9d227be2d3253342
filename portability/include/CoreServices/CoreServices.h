// Umbrella header of Core Services: the parts of Carbon Core, Apple Events and Launch Services that the
// library uses.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/AEDataModel.h>
#include <CoreServices/AEMach.h>
#include <CoreServices/AppleEvents.h>
#include <CoreServices/Files.h>
#include <CoreServices/Folders.h>
#include <CoreServices/LSOpen.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/MacTypes.h>
#include <CoreServices/Multiprocessing.h>
#include <CoreServices/Timer.h>
