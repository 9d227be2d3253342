// Umbrella header of Carbon: Application Services and the sending of Apple events.
#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/AEInteraction.h>
