#include "export/export.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modeltesting.h"
#include "tooltesting.h"

namespace TQTool {
namespace {

TEST(Export, NamesThatAreNotUtf8AreRefusedInEveryLanguage) {
  for (const ExportFormat& format : kExportFormats) {
    ExportOptions options;
    options.format = format;
    options.suffix = "_\xC3\xBC";  // two bytes of one character
    EXPECT_EQ("none", ErrorOf([&] { ExportModel(SmallModel(), options); }));
    options.suffix = "_\xFC";
    EXPECT_EQ("2: --suffix: '_\xFC' is not UTF-8; expected text in that encoding",
              ErrorOf([&] { ExportModel(SmallModel(), options); }));
  }
  ExportOptions options;
  options.table = "\xFC";
  EXPECT_THAT(ErrorOf([&] { ExportModel(SmallModel(), options); }),
              testing::StartsWith("2: --table: "));
}

}  // namespace
}  // namespace TQTool
