#include "tqcommon/record.h"

#include <algorithm>

namespace TQCommon {

Record::Record(int numberOfFields)
    : fValues(static_cast<std::size_t>(std::max(numberOfFields, 0)), 0.0) {}

Record::Record(const Record&) = default;
Record& Record::operator=(const Record&) = default;
Record::~Record() = default;

int Record::GetNumberOfFields() const { return static_cast<int>(fValues.size()); }

}  // namespace TQCommon
