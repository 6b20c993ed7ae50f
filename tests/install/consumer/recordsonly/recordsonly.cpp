#include <tqcommon/tqcommon.h>

int main() {
  const TQCommon::Record record(3);
  return record.GetNumberOfFields() == 3 && TQMV::gMissingValue < 0 ? 0 : 1;
}
