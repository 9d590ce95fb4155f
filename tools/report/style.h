#pragma once

namespace report {

/// For screens of all widths, and for paper.
constexpr const char* style = R"(
:root { color-scheme: light; }
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1rem; max-width: 62rem; color: #16202a; background: #fff;
  font: 16px/1.5 system-ui, -apple-system, "Segoe UI", Helvetica, Arial, sans-serif; }
h1 { font-size: 1.6rem; line-height: 1.2; margin: .4rem 0; overflow-wrap: anywhere; }
h2 { font-size: 1.2rem; margin: 2rem 0 .5rem; padding-bottom: .2rem;
  border-bottom: 2px solid #d5dde5; }
h3 { font-size: 1rem; margin: 1.2rem 0 .3rem; }
p { margin: .4rem 0; overflow-wrap: anywhere; }
.quiet { color: #566371; }
.picture svg { display: block; width: 100%; height: auto; border: 1px solid #d5dde5; }
.legend { display: grid; grid-template-columns: repeat(auto-fill, minmax(15rem, 1fr)); gap: .3rem 1rem;
  list-style: none; margin: .8rem 0; padding: 0; }
.legend li { display: flex; gap: .6rem; align-items: center; }
.legend svg { flex: none; }
.legend small { display: block; color: #566371; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; font-size: .9rem; font-variant-numeric: tabular-nums; }
th, td { padding: .25rem .7rem; border-bottom: 1px solid #e3e9ef; text-align: left;
  vertical-align: top; white-space: nowrap; }
th { color: #566371; font-weight: 600; }
td.number, th.number { text-align: right; }
td.text { white-space: normal; min-width: 10rem; overflow-wrap: anywhere; }
.finding { border-left: .35rem solid #90a0b0; padding: .4rem .8rem; margin: .6rem 0;
  background: #f5f7f9; }
.finding.error { border-color: #c62828; background: #fdf1f1; }
.finding.warning { border-color: #e08a00; background: #fff8ec; }
.finding b { text-transform: uppercase; font-size: .75rem; letter-spacing: .04em; }
.finding code { font-size: .8rem; color: #566371; }
@media (max-width: 40rem) { body { padding: .7rem; font-size: 15px; }
  th, td { padding: .25rem .45rem; } }
@media print { body { max-width: none; padding: 0; font-size: 10pt; }
  h2, h3 { break-after: avoid; } .finding, tr, .picture { break-inside: avoid; }
  thead, tbody tr:nth-child(-n+2) { break-after: avoid; } .wide + p { break-before: avoid; }
  .wide { overflow: visible; } table { font-size: 8pt; } th, td { white-space: normal;
  padding: .15rem .4rem; } thead { display: table-header-group; }
  * { print-color-adjust: exact; -webkit-print-color-adjust: exact; } }
@page { margin: 15mm; }
)";

}  // namespace report
