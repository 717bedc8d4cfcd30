#pragma once
#include "audiounits/StubUnit.h"
using HardwareIO = StubUnit;
