#include "Triggerable.h"
