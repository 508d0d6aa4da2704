/// How report pages look: on wide and narrow screens, in the dark, and on paper.
#pragma once

namespace zyr::host {

constexpr const char* REPORT_STYLE = R"css(
:root{--ink:#1c2330;--paper:#fff;--faint:#d8dde6;--dim:#5b6577;color-scheme:light dark}
@media (prefers-color-scheme:dark){:root{--ink:#e4e8f0;--paper:#14181f;--faint:#353c49;--dim:#9aa5b8}}
body{font:16px/1.45 system-ui,sans-serif;color:var(--ink);background:var(--paper);max-width:72rem;margin:auto;padding:1rem}
h1{font-size:1.5rem;overflow-wrap:anywhere}h2{font-size:1.2rem;border-bottom:1px solid var(--faint)}h4{margin:.8rem 0 .3rem}
small,p,figcaption{color:var(--dim)}
table{border-collapse:collapse}th,td{text-align:left;padding:.2rem .8rem .2rem 0;border-bottom:1px solid var(--faint);vertical-align:top}
td{font-variant-numeric:tabular-nums;overflow-wrap:anywhere}
li{overflow-wrap:anywhere}
th i{display:inline-block;width:.8em;height:.8em;margin-right:.4em;background:currentColor}
.wide{overflow-x:auto}
figure{margin:.8rem 0}
svg{display:block;width:100%;min-width:34rem;height:auto;font:12px system-ui,sans-serif}
svg text{fill:var(--dim)}.left{text-anchor:end}.below{text-anchor:middle}
.grid{stroke:var(--faint)}.axis{stroke:var(--dim);fill:none}.key{stroke:var(--ink);stroke-width:1.5}
.change{stroke:var(--dim);stroke-dasharray:5 4}
.line{fill:none;stroke:currentColor;stroke-width:1.6;stroke-linejoin:round;stroke-linecap:round}.bar{fill:currentColor}
.c0{color:#2563c9}.c1{color:#d9622b}.c2{color:#1f9254}.c3{color:#a03bb5}.c4{color:#b8860b}.c5{color:#0e8f9c}.c6{color:#c8324f}.c7{color:#6b7280}
.beside{display:grid;grid-template-columns:repeat(auto-fit,minmax(16rem,1fr));gap:.6rem}
.beside figure{margin:0}.beside img{width:100%;height:auto;display:block}
@media print{:root{--ink:#000;--paper:#fff;--faint:#ccc;--dim:#444}body{max-width:none;padding:0;font-size:11px}
svg{min-width:0}.wide{overflow:visible}figure,tr,h4{break-inside:avoid}h2,h4{break-after:avoid}}
)css";

} // namespace zyr::host
