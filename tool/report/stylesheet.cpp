#include "report/stylesheet.h"

namespace TQTool {

// Categories have colours that people who are blind to some tell apart, of alternating
// lightness, as neighbours lie upon each other.
const char* const kStylesheet = R"css(
:root {
  color-scheme: light dark;
  --paper: #fdfdfb; --raised: #f4f5f1; --ink: #1d2327; --soft: #59636b; --line: #dadeda;
  --bar: #4a6882; --link: #0b57a4; --warn: #8a4b00; --bad: #a81e1e; --good: #256b3a;
  --event: #b3541e; --noevent: #b4cadb; --rest: #b9bdbf;
  --k0: #332288; --k1: #ddcc77; --k2: #44aa99; --k3: #882255;
  --k4: #88ccee; --k5: #999933; --k6: #cc6677; --k7: #117733;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --paper: #14181b; --raised: #1c2226; --ink: #e4e7e5; --soft: #a5afb6; --line: #343c42;
    --bar: #8aa9c4; --link: #8cc2ff; --warn: #f0b266; --bad: #ff9a8f; --good: #85cf9b;
    --event: #ee9a5c; --noevent: #41586a; --rest: #666e73;
    --k0: #8190e6; --k1: #ddcc77; --k2: #44aa99; --k3: #c4659a;
    --k4: #99d5f2; --k5: #a5a542; --k6: #e58f9b; --k7: #3f9a5c;
  }
}
* { box-sizing: border-box; }
body {
  margin: 0 auto; padding: 0 1.25rem 4rem; max-width: 60rem;
  background: var(--paper); color: var(--ink);
  font: 1rem/1.55 system-ui, sans-serif; overflow-wrap: anywhere;
}
a { color: var(--link); text-underline-offset: .15em; }
:focus-visible { outline: 2px solid var(--link); outline-offset: 2px; }
.skip { position: absolute; left: -100vw; background: var(--paper); padding: .5rem 1rem; }
.skip:focus { left: 1rem; top: .5rem; }
h1, h2, h3 { line-height: 1.25; font-weight: 650; text-wrap: balance; }
h1 { font-size: 1.7rem; margin: 2.5rem 0 1.25rem; }
h2 { font-size: 1.3rem; margin: 3rem 0 .75rem; }
h3 { font-size: 1.15rem; margin: 0 0 .5rem; }
nav ul { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; padding: 0; list-style: none; }
.soft, .note, figcaption, footer { color: var(--soft); }
.note, figcaption, footer { font-size: .9rem; }
.attribute {
  margin: 0 0 3rem; padding-top: 1.75rem; border-top: 1px solid var(--line);
  content-visibility: auto; contain-intrinsic-size: auto 60rem;
}
.status { margin: 0 0 1rem; }
.state { font-weight: 600; }
.state.ok { color: var(--good); }
.state.warning { color: var(--warn); }
.state.error { color: var(--bad); }
.status .state { text-transform: uppercase; font-size: .8rem; letter-spacing: .05em; }
dl { display: flex; flex-wrap: wrap; gap: .75rem 1.75rem; margin: 0 0 1.25rem; }
dt { color: var(--soft); font-size: .85rem; }
dd { margin: 0; font-variant-numeric: tabular-nums; }
.reading { display: block; }
.reading div { margin: 0 0 .75rem; max-width: 42rem; }
.reading dt { color: var(--ink); font-size: 1rem; font-weight: 600; }
figure { margin: 0 0 1.5rem; }
figcaption { margin-top: .5rem; }
.chart { display: block; margin-left: 3.4rem; width: calc(100% - 3.4rem); overflow: visible; }
.chart text { fill: var(--soft); font-size: 11px; font-variant-numeric: tabular-nums; }
.chart .paneltitle { fill: var(--ink); font-size: 12px; font-weight: 600; }
.axis line, .cuts line { stroke: var(--line); }
.axis text { text-anchor: end; }
.cuts text { text-anchor: middle; }
.overall { stroke: var(--ink); stroke-dasharray: 4 3; }
.bar { fill: var(--bar); }
.event { fill: var(--event); } .noevent { fill: var(--noevent); } .rest { fill: var(--rest); }
.k0 { fill: var(--k0); } .k1 { fill: var(--k1); } .k2 { fill: var(--k2); }
.k3 { fill: var(--k3); } .k4 { fill: var(--k4); } .k5 { fill: var(--k5); }
.k6 { fill: var(--k6); } .k7 { fill: var(--k7); }
.chart svg path { stroke: var(--paper); vector-effect: non-scaling-stroke; }
.chart.dense svg path, .chart .bar { stroke: none; }
.hit { fill: transparent; }
.hit:hover { fill: var(--ink); fill-opacity: .08; }
.legend { display: flex; flex-wrap: wrap; gap: .25rem 1.1rem; list-style: none;
  margin: .75rem 0 .25rem; padding: 0; font-size: .9rem; }
.legend bdi { font-weight: 600; }
.legend::before { content: "From below:"; color: var(--soft); }
.key { width: .8rem; height: .8rem; vertical-align: -.05rem; }
.key rect { width: 100%; height: 100%; rx: 2px; stroke: var(--soft); stroke-width: .5; }
.scroll { overflow: auto; }
.scroll + .scroll { margin-top: 2rem; }
.tall { max-height: 34rem; }
table { border-collapse: collapse; font-size: .9rem; font-variant-numeric: tabular-nums;
  overflow-wrap: normal; min-width: min(100%, 34rem); }
.overview { min-width: 100%; }
td .soft { display: inline-block; min-width: 3.4rem; }
caption { text-align: left; color: var(--soft); padding-bottom: .4rem;
  position: sticky; left: 0; max-width: min(60rem, 100vw - 2rem); }
th, td { padding: .25rem .75rem; text-align: right; border-bottom: 1px solid var(--line);
  white-space: nowrap; }
th { font-weight: 600; }
thead th { border-bottom: 1px solid var(--soft); vertical-align: bottom; white-space: normal;
  max-width: 12rem; overflow-wrap: break-word; }
th:first-child { text-align: left; padding-left: .25rem; position: sticky; left: 0;
  background: var(--paper); }
tbody th { font-weight: 400; max-width: 16rem; white-space: normal; min-width: 7rem;
  overflow-wrap: anywhere; }
.tall thead th { position: sticky; top: 0; background: var(--paper); z-index: 1; }
.tall thead th:first-child { z-index: 2; }
tfoot tr:first-child > * { border-top: 1px solid var(--soft); font-weight: 600; }
tbody tr:hover > * { background: var(--raised); }
.overview tr > :last-child { text-align: left; }
.overview tr > :last-child { padding-left: 1.5rem; }
.overview tr > :nth-child(2) { text-align: left; }
.ranking span { display: inline-block; min-width: 3.4rem; text-align: right; }
.rank { width: 7rem; height: .6rem; margin-left: .5rem; }
abbr { text-decoration: none; }
footer { margin-top: 4rem; padding-top: 1rem; border-top: 1px solid var(--line); }
@media (max-width: 40rem) {
  body { padding: 0 1rem 3rem; }
  h1 { font-size: 1.4rem; margin-top: 1.5rem; }
  .chart { margin-left: 2.8rem; width: calc(100% - 2.8rem); }
  .wide, .rank { display: none; }
  th, td { padding: .3rem .5rem; }
  thead th { max-width: 7rem; }
  .overview tr > :last-child { padding-left: .5rem; white-space: normal; }
  .facts { display: grid; grid-template-columns: 1fr 1fr; }
}
@media print {
  body { max-width: none; padding: 0; font-size: 10pt; }
  nav, .skip { display: none; }
  a { color: inherit; text-decoration: none; }
  .attribute { content-visibility: visible; }
  figure, tr { break-inside: avoid; }
  h2, h3, caption { break-after: avoid; }
  .scroll { overflow: visible; max-height: none; }
  th:first-child, .tall thead th { position: static; }
  .chart, .key, .rank { print-color-adjust: exact; }
}
)css";

const char* const kStylesheetHash = "sha256-Q1JC2+spgNVojmVBbUKHj3aoGQsgRqCdO0psflU15h8=";

}  // namespace TQTool
