#include "apply/apply.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "input/missingtokens.h"
#include "input/numbertext.h"
#include "output/fieldtext.h"

namespace TQTool {
namespace {

constexpr std::size_t kBlockSize = 65536;  // bytes of output that are written at once

// One attribute of the model and where it is found in the data.
struct BinColumn {
  const BinnedAttribute* attribute;
  std::size_t column;              // in the data
  std::string name;                // of the bins
  std::vector<std::string> texts;  // of the bins, as they are written
};

// Writes rows in one of the formats.
class RowWriter {
 public:
  RowWriter(const ApplyOptions& options, const Source& data, const std::vector<BinColumn>& bins)
      : fOptions(options), fDelimiter(options.format == RowFormat::kTsv ? '\t' : ',') {
    if (!options.areBinsOnly) fNames = data.GetNames();
    for (const BinColumn& bin : bins) fNames.push_back(bin.name);
    if (options.format == RowFormat::kNdjson) {
      for (std::string& name : fNames) name = AsKey(name);
    }
  }

  // A row of column names, in formats that have one.
  void Header(std::string& text) {
    if (fOptions.format == RowFormat::kNdjson) return;
    Begin(text);
    for (const std::string& name : fNames) Text(name, text);
    End(text);
  }

  void Begin(std::string& text) {
    fField = 0;
    if (fOptions.format == RowFormat::kNdjson) text += '{';
  }
  void Text(std::string_view field, std::string& text) {
    StartField(text);
    Append(field, text);
  }
  // What has been made ready for the format.
  void Raw(std::string_view field, std::string& text) {
    StartField(text);
    text += field;
  }
  void End(std::string& text) { text += fOptions.format == RowFormat::kNdjson ? "}\n" : "\n"; }

  // A text made ready for Raw.
  std::string Ready(std::string_view field) const {
    std::string text;
    Append(field, text);
    return text;
  }

 private:
  static std::string AsKey(const std::string& name) {
    std::string key;
    AppendJsonString(name, key);
    return key + ":";
  }
  void Append(std::string_view field, std::string& text) const {
    if (fOptions.format == RowFormat::kNdjson) {
      AppendJsonString(field, text);
    } else {
      AppendField(field, fDelimiter, fOptions.isSpreadsheetSafe, text);
    }
  }
  void StartField(std::string& text) {
    if (fField > 0) text += fDelimiter;
    if (fOptions.format == RowFormat::kNdjson) text += fNames[fField];
    ++fField;
  }

  const ApplyOptions& fOptions;
  char fDelimiter;
  std::vector<std::string> fNames;  // as keys for JSON
  std::size_t fField = 0;           // the next one of the row
};

// The attributes that are asked for, found in the data.
std::vector<BinColumn> FindColumns(const Model& model, const Source& data,
                                   const ApplyOptions& options) {
  std::vector<BinColumn> found;
  std::unordered_set<std::string> names(data.GetNames().begin(), data.GetNames().end());
  if (options.areBinsOnly) names.clear();
  const std::vector<std::string>& wanted = options.attributes;
  for (const BinnedAttribute& attribute : model.attributes) {
    const bool isWanted =
        wanted.empty() || std::find(wanted.begin(), wanted.end(), attribute.name) != wanted.end();
    if (!isWanted) continue;
    std::string name = BinColumnName(model, attribute, options.suffix);
    if (!names.insert(name).second) {
      data.FailAtHeader(
          fmt::format("there is a column {} already, as the bins of {} would be "
                      "called; name another ending with --suffix",
                      Quoted(name), Quoted(attribute.name)));
    }
    found.push_back({&attribute, data.GetColumn(attribute.name), std::move(name), {}});
  }
  for (const std::string& name : wanted) {
    const auto isNamed = [&name](const BinColumn& bin) { return bin.attribute->name == name; };
    if (std::none_of(found.begin(), found.end(), isNamed)) {
      throw ToolError(kUsage, fmt::format("--attribute: the model has no bins of {}; see tqbin "
                                          "show for what it has",
                                          Quoted(name)));
    }
  }
  return found;
}

// How the bins are written.
void MakeTexts(const ApplyOptions& options, const RowWriter& writer, BinColumn& bin) {
  for (std::size_t b = 0; b <= bin.attribute->cuts.size(); ++b) {
    const std::string text = BinTextOf(*bin.attribute, b, options.binText);
    bin.texts.push_back(options.binText == BinText::kIndex ? text : writer.Ready(text));
  }
}

// Finds the bins of a row's values.
class Binner {
 public:
  Binner(const Source& data, const ApplyOptions& options, const MissingTokens& missing)
      : fData(data), fOptions(options), fMissing(missing) {}

  // The text of the bin of a row's value; null for a missing one.
  const std::string* Find(const BinColumn& bin) const {
    const std::string_view text = fData.GetField(bin.column);
    if (text.data() == nullptr || fMissing.Contains(text)) return nullptr;
    double value = 0.0;
    if (ReadNumber(text, &value, fData.GetDecimalPoint()) != NumberText::kNumber)
      return RefuseOrMissing(bin, text);
    const BinnedAttribute& attribute = *bin.attribute;
    if (attribute.missing.Contains(value)) return nullptr;
    if (fOptions.outOfRange != OddValue::kBin && IsOutOfRange(attribute, value)) {
      if (fOptions.outOfRange == OddValue::kMissing) return nullptr;
      fData.FailAtField(
          bin.column,
          fmt::format("{} in column {} lies outside {} to {}, the values that the model was made "
                      "of; correct it, or choose another --out-of-range",
                      Quoted(text), Quoted(attribute.name), attribute.minimum, attribute.maximum));
    }
    return &bin.texts[BinOf(attribute, value)];
  }

 private:
  static bool IsOutOfRange(const BinnedAttribute& attribute, double value) {
    return attribute.minimum != TQMV::gMissingValue &&
           (value < attribute.minimum || value > attribute.maximum);
  }

  const std::string* RefuseOrMissing(const BinColumn& bin, std::string_view text) const {
    if (fOptions.notNumber != OddValue::kMissing) {
      fData.FailAtField(
          bin.column, fmt::format("{} in column {} is not a finite number; expected a number or a "
                                  "missing-value text; correct it, declare it missing with "
                                  "--missing-token, or take --not-number missing",
                                  Quoted(text), Quoted(bin.attribute->name)));
    }
    return nullptr;
  }

  const Source& fData;
  const ApplyOptions& fOptions;
  const MissingTokens& fMissing;
};

}  // namespace

std::uint64_t ApplyModel(const Model& model, Source& data, const ApplyOptions& options,
                         const TakeText& take) {
  std::vector<BinColumn> bins = FindColumns(model, data, options);
  RowWriter writer(options, data, bins);
  for (BinColumn& bin : bins) MakeTexts(options, writer, bin);
  const bool isJson = options.format == RowFormat::kNdjson;
  const std::string missingText =
      isJson && options.missingText.empty() ? "null" : writer.Ready(options.missingText);
  const MissingTokens missing(options.missingTokens.empty() ? model.settings.missingTokens
                                                            : options.missingTokens);
  const Binner binner(data, options, missing);

  std::string text;
  writer.Header(text);
  std::uint64_t rows = 0;
  for (; data.NextRow(); ++rows) {
    writer.Begin(text);
    for (std::size_t i = 0; !options.areBinsOnly && i < data.GetNames().size(); ++i) {
      if (isJson) data.CheckUtf8(i, data.GetField(i));
      writer.Text(data.GetField(i), text);
    }
    for (const BinColumn& bin : bins) {
      const std::string* const found = binner.Find(bin);
      writer.Raw(found == nullptr ? missingText : *found, text);
    }
    writer.End(text);
    if (text.size() < kBlockSize) continue;
    if (!take(text)) return rows + 1;
    text.clear();
  }
  take(text);
  return rows;
}

}  // namespace TQTool
