#pragma once

#include "tqcommon/tqcommon.h"
