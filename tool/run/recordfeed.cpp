#include "run/recordfeed.h"

#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "run/casespool.h"

namespace TQTool {
namespace {

constexpr double kNoCategory = -1.0;  // how a record says that its target is missing

}  // namespace

RecordFeed::RecordFeed(Source& source, const Columns& columns, const MissingTokens& missing,
                       BINVarList& list, WeightRule weightRule)
    : fSource(source),
      fColumns(columns),
      fMissing(missing),
      fWeightEncoder(dynamic_cast<BINRoundEncoder*>(list.GetEncoderAt(list.GetWeightIndex()))),
      fWeightRule(std::move(weightRule)),
      fRecordSize(list.Size()),
      fIsDone(false),
      fIsLastBlock(false),
      fRecords(nullptr),
      fPosition(0),
      fCount(0) {
  for (std::size_t t = 0; t < columns.targets.size(); ++t) {
    IBINEncoder* const encoder = list.GetEncoderAt(TargetVariable(t));
    fTargetEncoders.push_back(dynamic_cast<BINStringEncoder*>(encoder));
  }
  for (std::size_t a = 0; a < columns.attributes.size(); ++a) {
    const IBINVariable* const variable = list.GetVarAt(AttributeVariable(columns, a));
    fUserMissing.push_back(
        dynamic_cast<const BINNumericUserMissing*>(variable->GetUserMissingInfo()));
  }
  fNumCategories.resize(columns.targets.size());
  fFed.withoutTarget.resize(columns.targets.size());
  fFed.pairs.resize(columns.pairs.size());
}

bool RecordFeed::NextBlock() {
  if (fIsDone) return false;
  if (fReadAhead == nullptr) {
    fReadAhead = std::make_unique<ReadAhead>([this](RecordBlock& block) { FillBlock(block); },
                                             fRecordSize, ReadAhead::IsWorthwhile());
  }
  while (!fIsLastBlock) {
    const RecordBlock& block = fReadAhead->Next();
    fIsLastBlock = block.isLast;
    fError = block.error;
    fRecords = block.records.data();
    fPosition = 0;
    fCount = block.count;
    if (fCount > 0) return true;
  }
  fReadAhead.reset();
  fIsDone = true;
  return false;
}

void RecordFeed::FillBlock(RecordBlock& block) {
  while (block.count < block.records.size()) {
    if (!ReadRow(block.records[block.count])) {
      block.isLast = true;
      return;
    }
    ++block.count;
  }
}

void RecordFeed::RethrowError() const {
  if (fError != nullptr) std::rethrow_exception(fError);
}

bool RecordFeed::ReadRow(TQCommon::Record& record) {
  if (!fSource.NextRow()) return false;
  int field = 0;
  double weight = 1.0;
  for (std::size_t t = 0; t < fTargetEncoders.size(); ++t) record[field++] = ReadTarget(t);
  if (fWeightEncoder != nullptr) {
    const double given = ReadWeight();
    record[field++] = given;
    weight = fWeightEncoder->Encode(given);
    if (weight == TQMV::gMissingValue) AccountDropped(given);
  }
  for (std::size_t a = 0; a < fUserMissing.size(); ++a) record[field++] = ReadAttribute(a);
  Account(record, weight);
  return true;
}

double RecordFeed::ReadTarget(std::size_t target) {
  const std::size_t column = fColumns.targets[target];
  const std::string_view text = fSource.GetField(column);
  if (fMissing.Contains(text)) return kNoCategory;
  fCategory = text;
  const double code = fTargetEncoders[target]->Encode(fCategory);
  if (code >= kMaxTargetCategories) {
    fSource.FailAtField(column,
                        fmt::format("{} is category number {} of the target; expected at "
                                    "most {} different ones; choose another target, or "
                                    "group its categories first",
                                    Quoted(text), kMaxTargetCategories + 1, kMaxTargetCategories));
  }
  if (code == fNumCategories[target]) {  // a new one
    fSource.CheckUtf8(column, text);
    ++fNumCategories[target];
  }
  return code;
}

double RecordFeed::ReadValue(std::size_t column) {
  const std::string_view text = fSource.GetField(column);
  if (fMissing.Contains(text)) return TQMV::gMissingValue;
  double value = 0.0;
  const NumberText found = ReadNumber(text, &value, fSource.GetDecimalPoint());
  if (found != NumberText::kNumber) FailAtValue(column, found);
  return value;
}

double RecordFeed::ReadAttribute(std::size_t attribute) {
  const double value = ReadValue(fColumns.attributes[attribute]);
  const BINNumericUserMissing* const userMissing = fUserMissing[attribute];
  const bool isUserMissing = userMissing != nullptr && userMissing->Contains(value);
  return isUserMissing ? TQMV::gMissingValue : value;
}

double RecordFeed::ReadWeight() {
  const std::size_t column = *fColumns.weight;
  const double given = ReadValue(column);
  if (given == TQMV::gMissingValue || fWeightRule.missing.Contains(given)) {
    return TQMV::gMissingValue;
  }
  const double weight = given * fWeightRule.factor / fWeightRule.divisor;
  if (!std::isfinite(weight)) {
    fSource.FailAtField(
        column, fmt::format("{} in column {} is too large a weight to be multiplied "
                            "by {}; correct it, or give a smaller --weight-scale",
                            Quoted(fSource.GetField(column)), Quoted(fSource.GetNames()[column]),
                            fWeightRule.factor));
  }
  return weight;
}

void RecordFeed::FailAtValue(std::size_t column, NumberText found) const {
  const std::string text(fSource.GetField(column));
  const std::string& name = fSource.GetNames()[column];
  std::string alternatives = ", or declare it missing with --missing-token";
  if (column != fColumns.weight) {
    alternatives += ", or leave the column out by naming others with --attribute";
  }
  double number = 0.0;
  if (ReadNumber(text, &number, ',') == NumberText::kNumber) {
    alternatives += ", or say --decimal-comma";
  }
  fSource.FailAtField(
      column, fmt::format("{} in column {} {}; expected a number or a missing-value text; correct "
                          "it{}",
                          Quoted(text), Quoted(name),
                          found == NumberText::kInfinite ? "is not finite" : "is not a number",
                          alternatives));
}

void RecordFeed::AccountDropped(double weight) {
  if (weight == TQMV::gMissingValue) {
    ++fFed.droppedWeightMissing;
  } else if (weight <= 0.0) {
    ++fFed.droppedWeightNotPositive;
  } else {
    ++fFed.droppedWeightRoundedAway;
  }
}

void RecordFeed::Account(const TQCommon::Record& record, double weight) {
  ++fFed.rows;
  if (weight == TQMV::gMissingValue) return;
  ++fFed.cases;
  fFed.weight += weight;
  if (fSpool != nullptr) fSpool->Add(record);
  for (std::size_t t = 0; t < fFed.withoutTarget.size(); ++t) {
    if (record[TargetVariable(t)] == kNoCategory) ++fFed.withoutTarget[t];
  }
  for (std::size_t i = 0; i < fFed.pairs.size(); ++i) {
    const ColumnPair& pair = fColumns.pairs[i];
    const double value = record[AttributeVariable(fColumns, pair.attribute)];
    if (value == TQMV::gMissingValue) continue;
    if (pair.target.has_value() && record[TargetVariable(*pair.target)] == kNoCategory) continue;
    FedPair& fed = fFed.pairs[i];
    fed.validWeight += weight;
    if (fed.minimum == TQMV::gMissingValue || value < fed.minimum) fed.minimum = value;
    if (fed.maximum == TQMV::gMissingValue || value > fed.maximum) fed.maximum = value;
  }
}

}  // namespace TQTool
