#include "output/bincsv.h"

#include <cmath>
#include <optional>
#include <string_view>

#include "base/statuswords.h"
#include "model/measures.h"
#include "output/fieldtext.h"

namespace TQTool {
namespace {

constexpr std::string_view kHeader =
    "attribute,target,status,status_code,bin,label,interval,lower,upper,closed,rows,weight,share,"
    "event_rate,weight_of_evidence,category_rows,category_weights\n";

// A row that grows field by field.
class CsvRow {
 public:
  explicit CsvRow(bool isSpreadsheetSafe) : fIsSpreadsheetSafe(isSpreadsheetSafe) {}

  void AddText(std::string_view field) {
    StartField();
    AppendField(field, ',', fIsSpreadsheetSafe, fText);
  }
  void AddNumber(double number) {
    StartField();
    if (number != TQMV::gMissingValue && std::isfinite(number)) AppendNumber(number, fText);
  }
  void AddNothing(std::size_t numFields) {
    for (std::size_t i = 0; i < numFields; ++i) StartField();
  }
  std::string Finish() { return std::move(fText) + "\n"; }

 private:
  void StartField() {
    if (!fIsFirst) fText += ',';
    fIsFirst = false;
  }

  bool fIsSpreadsheetSafe;
  bool fIsFirst = true;
  std::string fText;
};

// {"category":count,...}; nothing without a target.
std::string CountsText(const Target* target, const Bin& bin, double Count::*which) {
  if (target == nullptr || bin.categories.size() != target->categories.size()) return "";
  std::string text = "{";
  for (std::size_t c = 0; c < bin.categories.size(); ++c) {
    if (c > 0) text += ',';
    AppendJsonString(target->categories[c], text);
    text += ':';
    const double count = bin.categories[c].*which;
    if (count == TQMV::gMissingValue) {
      text += "null";
    } else {
      AppendNumber(count, text);
    }
  }
  return text + "}";
}

// What the rows of all bins of an attribute begin with.
void AddAttribute(const BinnedAttribute& attribute, const Target* target, CsvRow& row) {
  row.AddText(attribute.name);
  row.AddText(target == nullptr ? "" : target->name);
  row.AddText(SeverityOf(attribute.status));
  row.AddNumber(static_cast<double>(attribute.status.GetErrorCode()));
}

void AddBin(const BinnedAttribute& attribute, std::size_t b, const Target* target,
            const std::optional<Measures>& measures, CsvRow& row) {
  const Bin& bin = attribute.bins[b];
  row.AddNumber(static_cast<double>(b));
  row.AddText(LabelOf(attribute, b));
  row.AddText(IntervalText(attribute, b));
  row.AddNumber(bin.lower);
  row.AddNumber(bin.upper);
  row.AddText(attribute.isRightClosed ? "right" : "left");
  row.AddNumber(bin.count.rows);
  row.AddNumber(bin.count.weight);
  row.AddNumber(ShareOf(bin, attribute));
  if (measures.has_value() && !measures->bins.empty()) {
    row.AddNumber(measures->bins[b].eventRate);
    row.AddNumber(measures->bins[b].weightOfEvidence);
  } else {
    row.AddNothing(2);
  }
  row.AddText(CountsText(target, bin, &Count::rows));
  row.AddText(CountsText(target, bin, &Count::weight));
}

}  // namespace

std::string WriteBinCsv(const Model& model, bool isSpreadsheetSafe) {
  constexpr std::size_t kFieldsOfABin = 13;
  std::string text(kHeader);
  for (const BinnedAttribute& attribute : model.attributes) {
    const Target* const target = model.TargetOf(attribute);
    const std::optional<Measures> measures = MeasuresOf(attribute);
    for (std::size_t b = 0; b < attribute.bins.size(); ++b) {
      CsvRow row(isSpreadsheetSafe);
      AddAttribute(attribute, target, row);
      AddBin(attribute, b, target, measures, row);
      text += row.Finish();
    }
    if (!attribute.bins.empty()) continue;
    CsvRow row(isSpreadsheetSafe);
    AddAttribute(attribute, target, row);
    row.AddNothing(kFieldsOfABin);
    text += row.Finish();
  }
  return text;
}

}  // namespace TQTool
