#include "input/opensource.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "base/notes.h"
#include "base/plaintext.h"
#include "base/safemode.h"
#include "base/toolerror.h"
#include "input/bytestream.h"
#include "input/csvsource.h"
#include "input/decompression.h"
#include "input/delimiter.h"
#include "input/encoding.h"
#include "input/inputfile.h"
#include "input/postgressource.h"
#include "input/sourceseries.h"
#include "input/sqlitesource.h"

namespace TQTool {
namespace {

ReadBlock ReadBlockOf(std::shared_ptr<ByteStream> bytes) {
  return [bytes = std::move(bytes)](char* buffer, std::size_t size) {
    return bytes->Read(buffer, size);
  };
}

void Tell(const InputOptions& options, const std::string& name, const std::string& finding) {
  if (options.isVerbose) PrintNote(fmt::format("{}: {}", name, finding));
}

// The bytes of a file, decompressed if need be, and whether that was so.
std::shared_ptr<ByteStream> OpenBytes(const std::shared_ptr<InputFile>& file,
                                      const InputOptions& options, bool* isCompressed) {
  const std::string& name = file->GetName();
  auto bytes = std::make_shared<ByteStream>(
      [file](char* buffer, std::size_t size) { return file->Read(buffer, size); });
  std::unique_ptr<Decompressor> decompressor = FindDecompressor(bytes->Peek(kCompressionMark));
  *isCompressed = decompressor != nullptr;
  if (!*isCompressed) return bytes;
  Tell(options, name, fmt::format("compressed with {}", decompressor->GetName()));
  return std::make_shared<ByteStream>(
      Decompress(std::move(decompressor), std::move(bytes), name, options.maxDecompressedBytes));
}

// The text of a file in UTF-8, and how many bytes it has; 0 when that is not known.
std::shared_ptr<ByteStream> OpenText(const std::shared_ptr<InputFile>& file,
                                     const InputOptions& options, std::uint64_t* size) {
  bool isCompressed = false;
  std::shared_ptr<ByteStream> bytes = OpenBytes(file, options, &isCompressed);
  *size = isCompressed || !options.encoding.empty() ? 0 : file->GetSize();
  if (options.encoding.empty()) return bytes;
  return std::make_shared<ByteStream>(
      ConvertToUtf8(options.encoding, std::move(bytes), file->GetName()));
}

std::unique_ptr<Source> OpenCsv(const std::string& path, const InputOptions& options) {
  const auto file = std::make_shared<InputFile>(path);
  std::uint64_t size = 0;
  std::shared_ptr<ByteStream> text = OpenText(file, options, &size);
  char delimiter = options.delimiter.value_or(',');
  if (!options.delimiter.has_value()) {
    const std::string_view sample = text->Peek(kDelimiterSample);
    delimiter = FindDelimiter(sample, sample.size() < kDelimiterSample, options.hasDecimalComma);
    Tell(options, file->GetName(),
         fmt::format("the delimiter is {}, as the first rows show; another one can be named with "
                     "--delimiter",
                     DescribeDelimiter(delimiter)));
  }
  CsvReader reader(ReadBlockOf(std::move(text)), file->GetName(), delimiter,
                   {options.maxRecordBytes, options.maxColumns});
  return std::make_unique<CsvSource>(std::move(reader), options.hasDecimalComma ? ',' : '.', size);
}

bool IsDatabase(std::string_view input) {
  return input.starts_with(SqliteSource::kScheme) || PostgresSource::IsAddress(input);
}

std::unique_ptr<Source> OpenOne(const std::string& input, const InputOptions& options) {
  if (IsDatabase(input) && !options.encoding.empty()) {
    throw ToolError(kUsage, fmt::format("--encoding: {} is a data base, which knows its own; "
                                        "expected a text file; leave the option out",
                                        Printable(input)));
  }
  if (input.starts_with(SqliteSource::kScheme)) {
    return std::make_unique<SqliteSource>(input, options.query);
  }
  if (PostgresSource::IsAddress(input)) {
    if (IsSafeMode()) {
      throw ToolError(kUsage,
                      fmt::format("--safe: {} is no file, and asking it may read files "
                                  "with passwords and keys; expected a file, or sqlite:FILE",
                                  Printable(input)));
    }
    return std::make_unique<PostgresSource>(input, options.query);
  }
  if (!options.query.empty()) {
    throw ToolError(kUsage, fmt::format("--query: {} is no data base; expected sqlite:FILE or "
                                        "postgresql://...",
                                        Quoted(input)));
  }
  return OpenCsv(input, options);
}

}  // namespace

std::unique_ptr<Source> OpenSource(const InputOptions& options) {
  if (options.inputs.size() == 1) return OpenOne(options.inputs.front(), options);
  for (const std::string& input : options.inputs) {
    if (!IsDatabase(input)) InputFile::CheckReadable(input);
  }
  return std::make_unique<SourceSeries>(
      options.inputs, [options](const std::string& input) { return OpenOne(input, options); });
}

bool CanBeReadTwice(const InputOptions& options) {
  const auto canBe = [](const std::string& input) {
    if (IsDatabase(input)) return true;
    std::error_code ignored;  // whoever opens the file reports it
    return input != "-" && !std::filesystem::is_fifo(input, ignored);
  };
  return std::all_of(options.inputs.begin(), options.inputs.end(), canBe);
}

}  // namespace TQTool
