#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "input/source.h"

namespace TQTool {

// Several sources read one after another as one.  Their columns must have the same
// names in the same order.  Each is opened when the one before it has ended.
class SourceSeries : public Source {
 public:
  using Open = std::function<std::unique_ptr<Source>(const std::string& input)>;

  // Opens the first of the inputs, of which there must be one.
  SourceSeries(std::vector<std::string> inputs, Open open);

  std::vector<std::string> GetInputNames() const override { return fInputNames; }
  bool NextRow() override;
  std::string DescribeRow() const override;
  std::string LocateField(std::size_t column) const override;
  std::string LocateHeader() const override { return fHeaderPlace; }
  std::string HintForOnlyColumn() const override { return fHint; }
  void Mark() override;
  void Rewind() override;

 private:
  Source& Current() const { return *fSources[fCurrent]; }
  void OpenCurrent();
  bool Advance();
  void CheckNames() const;

  std::vector<std::string> fInputs;
  Open fOpen;
  std::vector<std::unique_ptr<Source>> fSources;  // one per input; null when not open
  std::size_t fCurrent;
  std::size_t fMark;
  bool fIsMarked;
  std::vector<std::string> fInputNames;  // of the sources opened so far
  std::string fHeaderPlace;
  std::string fHint;
};

}  // namespace TQTool
