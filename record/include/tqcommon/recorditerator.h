#pragma once

#include "tqcommon/export.h"

namespace TQCommon {

class Record;

// The host's stream of cases, derived by the host and read once, forwards.
class TQCOMMON_EXPORT RecordIterator {
 public:
  virtual ~RecordIterator();

  // Whether another case may follow.  Is asked more than once before a case is
  // taken, so it must not move on.
  virtual bool HasMore() = 0;

  // The next case, owned by the iterator and valid until the next call; or null,
  // which is no end of data: the reader skips it and asks HasMore again.
  virtual const Record* Next() = 0;
};

}  // namespace TQCommon
