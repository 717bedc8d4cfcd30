#pragma once
#include "audiounits/StubUnit.h"
using FormatConverter = StubUnit;
