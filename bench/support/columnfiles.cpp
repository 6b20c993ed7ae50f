#include "bench/support/columnfiles.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>

namespace bench {

namespace {

static_assert(std::endian::native == std::endian::little, "column files are little-endian");

constexpr std::size_t kCsvBlock = 1U << 20U;  // bytes from one write to the next
constexpr std::size_t kLongestNumber = 32;    // a double, shortest form, and a separator

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

FileHandle Open(const std::string& path, const char* mode) {
  FileHandle file(std::fopen(path.c_str(), mode));
  if (file == nullptr) throw std::runtime_error("cannot open " + path);
  return file;
}

void Write(std::FILE* file, const void* bytes, std::size_t count, const std::string& path) {
  if (std::fwrite(bytes, 1, count, file) != count) {
    throw std::runtime_error("cannot write " + path);
  }
}

// Lets `fill` write a file under another name, which then becomes its name.
void WriteWhole(const std::string& path, const std::function<void(std::FILE*)>& fill) {
  const std::string unfinished = path + ".part";
  FileHandle file = Open(unfinished, "wb");
  fill(file.get());
  if (std::fclose(file.release()) != 0) throw std::runtime_error("cannot write " + path);
  std::filesystem::rename(unfinished, path);
}

void WriteColumn(const std::vector<double>& values, const std::string& path) {
  WriteWhole(path, [&](std::FILE* file) {
    Write(file, values.data(), values.size() * sizeof(double), path);
  });
}

std::vector<double> ReadColumn(const std::string& path, std::size_t rows) {
  const FileHandle file = Open(path, "rb");
  std::vector<double> values(rows);
  if (std::fread(values.data(), sizeof(double), rows, file.get()) != rows) {
    throw std::runtime_error(path + " holds fewer than " + std::to_string(rows) + " rows");
  }
  return values;
}

std::string AttributeName(std::size_t i) { return "x" + std::to_string(i); }

void WriteCsv(const Columns& columns, const std::string& path) {
  std::vector<const double*> fields;
  std::string block;
  for (std::size_t i = 0; i < columns.attributes.size(); ++i) {
    fields.push_back(columns.attributes[i].data());
    block += AttributeName(i);
    block += ',';
  }
  fields.push_back(columns.target.data());
  block += "y";
  if (!columns.weights.empty()) {
    fields.push_back(columns.weights.data());
    block += ",w";
  }
  block += "\n";

  WriteWhole(path, [&](std::FILE* file) {
    char number[kLongestNumber];
    for (std::size_t row = 0; row < columns.Rows(); ++row) {
      for (const double* const values : fields) {
        block.append(number, std::to_chars(number, number + sizeof number, values[row]).ptr);
        block += ',';
      }
      block.back() = '\n';
      if (block.size() < kCsvBlock) continue;
      Write(file, block.data(), block.size(), path);
      block.clear();
    }
    Write(file, block.data(), block.size(), path);
  });
}

}  // namespace

void WriteDataSet(const Columns& columns, const std::string& directory, bool withCsv) {
  std::filesystem::create_directories(directory);
  for (std::size_t i = 0; i < columns.attributes.size(); ++i) {
    WriteColumn(columns.attributes[i], directory + "/" + AttributeName(i) + ".f64");
  }
  WriteColumn(columns.target, directory + "/y.f64");
  if (!columns.weights.empty()) WriteColumn(columns.weights, directory + "/w.f64");
  if (withCsv) WriteCsv(columns, directory + "/data.csv");
}

Columns ReadDataSet(const std::string& directory, std::size_t rows, int attributes,
                    bool withWeights) {
  Columns columns;
  for (int i = 0; i < attributes; ++i) {
    const std::string name = AttributeName(static_cast<std::size_t>(i));
    columns.attributes.push_back(ReadColumn(directory + "/" + name + ".f64", rows));
  }
  columns.target = ReadColumn(directory + "/y.f64", rows);
  if (withWeights) columns.weights = ReadColumn(directory + "/w.f64", rows);
  const auto largest = std::max_element(columns.target.begin(), columns.target.end());
  columns.classes = largest == columns.target.end() ? 0 : static_cast<int>(*largest) + 1;
  return columns;
}

}  // namespace bench
