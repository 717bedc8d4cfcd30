#include "screens/AudioSetup.h"
