// Umbrella header of Carbon: Application Services, and sending Apple events.
#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/AEInteraction.h>
