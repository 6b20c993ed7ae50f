#include "report/report.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include <fmt/format.h>

#include "output/modelwords.h"
#include "report/entry.h"
#include "report/html.h"
#include "report/overview.h"
#include "report/section.h"
#include "report/stylesheet.h"

namespace TQTool {
namespace {

// Browsers show about as many rows of tables with ease; but each attribute may have some.
constexpr std::size_t kRowsOfPage = 20000;
constexpr std::size_t kLeastRows = 20;

constexpr const char* kReading = R"(<section aria-labelledby="reading">
<h2 id="reading">How to read the numbers</h2>
<dl class="reading">
<div><dt>Bin</dt><dd>A round bracket leaves the number beside it out, a square one takes it in:
(2, 5] holds what is above 2 and at most 5. Charts draw all bins equally wide.</dd></div>
<div><dt>Share</dt><dd>Of all cases that count, those with a missing value included.</dd></div>
<div><dt>Information gain</dt><dd>By how many bits knowing the bin lessens the uncertainty about
the target. 0: the bins tell nothing.</dd></div>
<div><dt>Event rate</dt><dd>For a target of two categories: the share of the second, the event, in
the bin. The dashed line is the rate of all bins together.</dd></div>
<div><dt>WoE, weight of evidence</dt><dd>Above 0 the bin holds more events than the data on the
whole, below 0 fewer. Where a bin holds one category only, 0.5 is added to both for this and the
information value.</dd></div>
<div><dt>IV, information value</dt><dd>How strongly the bins part events from the others, added up
over the bins.</dd></div>
<div><dt>?</dt><dd>Not known, because cut points were edited after the bins had been
counted.</dd></div>
</dl>
</section>
)";

std::string WriteHead(const Model& model) {
  return fmt::format(
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
      "style-src '{}'; base-uri 'none'; form-action 'none'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"referrer\" content=\"no-referrer\">\n"
      "<title>{}</title>\n<style>{}</style>\n</head>\n",
      kStylesheetHash, Escaped(TitleOf(model)), kStylesheet);
}

// What the report is about, in numbers.
std::string WriteInput(const Model& model) {
  std::string facts = Fact("Rows", Grouped(std::to_string(model.input.rows)));
  if (!model.settings.weight.empty()) {
    facts += Fact("Total weight by " + Isolated(model.settings.weight),
                  Grouped(WeightText(model.input.weight)));
  }
  for (const Target& target : model.targets) {
    facts += Fact("Target", fmt::format("{}, {} categories", Isolated(target.name),
                                        target.categories.size()));
  }
  const std::string leftOut = LeftOutOf(model);
  if (!leftOut.empty()) facts += Fact("Not counted", Escaped(leftOut));
  return "<dl>" + facts + "</dl>\n";
}

std::string WriteHeader(const Model& model) {
  std::string links;
  if (!model.attributes.empty()) {
    links =
        "<li><a href=\"#overview\">Overview</a></li>\n"
        "<li><a href=\"#attributes\">Attributes</a></li>\n";
  }
  return fmt::format(
      "<a class=\"skip\" href=\"#main\">Skip to the results</a>\n"
      "<header>\n<h1>{}</h1>\n{}<nav aria-label=\"Parts of the report\"><ul>\n{}"
      "<li><a href=\"#reading\">How to read the numbers</a></li>\n</ul></nav>\n</header>\n",
      Escaped(TitleOf(model)), WriteInput(model), links);
}

// An overview for each target, the ranked entries standing target by target.
std::string WriteOverviews(std::span<const ReportEntry> entries) {
  std::string text = "<section aria-labelledby=\"overview\">\n<h2 id=\"overview\">Overview</h2>\n";
  for (std::size_t first = 0; first < entries.size();) {
    std::size_t end = first + 1;
    while (end < entries.size() && entries[end].target == entries[first].target) ++end;
    text += WriteOverview(entries.subspan(first, end - first));
    first = end;
  }
  return text + "</section>\n";
}

std::string WriteSections(const std::vector<ReportEntry>& entries, const Model& model) {
  const std::size_t maxBins = std::max(kLeastRows, kRowsOfPage / entries.size());
  std::string text = "<h2 id=\"attributes\">Attributes</h2>\n";
  for (const ReportEntry& entry : entries) text += WriteSection(entry, model, maxBins);
  return text;
}

std::string WriteFooter(const Model& model) {
  const std::string created =
      model.created.empty() ? "" : fmt::format(" on {}", Escaped(model.created));
  return fmt::format("<footer><p>Bins by tqbin {}, {}{}.</p></footer>\n",
                     Escaped(model.toolVersion), NameOf(model.method), created);
}

}  // namespace

std::string WriteReport(const Model& model) {
  const std::vector<ReportEntry> entries = RankedEntries(model);
  std::string text = WriteHead(model) + "<body>\n" + WriteHeader(model) + "<main id=\"main\">\n";
  if (!entries.empty()) text += WriteOverviews(entries) + WriteSections(entries, model);
  return text + kReading + "</main>\n" + WriteFooter(model) + "</body>\n</html>\n";
}

}  // namespace TQTool
