#pragma once
#include "audiounits/StubUnit.h"
using MultichannelMixer = StubUnit;
