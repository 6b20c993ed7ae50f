#pragma once

// The whole record library: what a host brings to a binning run.
#include "tqcommon/missingvalue.h"
#include "tqcommon/progresslistener.h"
#include "tqcommon/querycancel.h"
#include "tqcommon/record.h"
#include "tqcommon/recorditerator.h"
