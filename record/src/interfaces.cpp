// The destructors of the host's interfaces, here so that each class has one
// virtual table, in this library, however many hosts derive from it.
#include "tqcommon/progresslistener.h"
#include "tqcommon/querycancel.h"
#include "tqcommon/recorditerator.h"

namespace TQCommon {
RecordIterator::~RecordIterator() = default;
}  // namespace TQCommon

TQQueryCancel::~TQQueryCancel() = default;
ProgressListener::~ProgressListener() = default;
