#include "WaveAccess.h"
