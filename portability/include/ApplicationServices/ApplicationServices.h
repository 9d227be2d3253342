// Umbrella header of Application Services: Core Services and the Process Manager.
#pragma once

#include <ApplicationServices/Processes.h>
#include <CoreServices/CoreServices.h>
