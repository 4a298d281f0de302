// The demo's page.

const escape = (text) =>
  String(text).replace(/[&<>"]/g, (c) => ({ '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;' })[c]);

function table(rows) {
  const keys = Object.keys(rows[0]);
  const cells = (row) => keys.map((key) => `<td>${escape(row[key])}</td>`).join('');
  return `<table>
<tr>${keys.map((key) => `<th>${escape(key)}</th>`).join('')}</tr>
${rows.map((row) => `<tr>${cells(row)}</tr>`).join('\n')}
</table>`;
}

function figure(title, picture) {
  const kib = (picture.bytes / 1024).toFixed(0);
  return `<figure>
<img src="${escape(picture.name)}" width="${picture.width}" height="${picture.height}" alt="${escape(title)}">
<figcaption>${escape(title)}: ${picture.width} × ${picture.height} pixels, ${kib} KiB,
${picture.milliseconds.toFixed(1)} ms</figcaption>
</figure>`;
}

function comparison(display, without) {
  if (!without) return '';
  return `<h2>captureDisplay([${escape(JSON.stringify(without.leftOut))}], 0.8)</h2>
<p>Before and after: the application is absent, and what lies behind it shows.</p>
<div class="pair">
${figure('With it', display)}
${figure('Without it', without)}
</div>`;
}

function actions(display, acted) {
  if (!acted) return '';
  return `<h2>Acting</h2>
${table(acted.steps)}
<div class="pair">
${figure('Before', display)}
${figure('After', acted)}
</div>`;
}

function clipboard(shared) {
  return shared ? `<h2>The clipboard</h2>\n${table(shared)}` : '';
}

function programs(steered) {
  if (!steered) return '';
  return `<h2>A program by its name</h2>
${table(steered.steps)}
<div class="pair">
${figure('Opened', steered.opened)}
${figure('Hidden', steered.hidden)}
${figure('Shown again', steered.shown)}
</div>`;
}

/** The windows of the picture's display as rectangles over it, the one in front last. */
function windowList({ windows, ...picture }) {
  const { displayId, displayWidth, displayHeight, originX, originY } = picture;
  const outline = ({ bundleId, pid, x, y, w, h }) => `<g>
<rect x="${x - originX}" y="${y - originY}" width="${w}" height="${h}"/>
<text x="${x - originX + 8}" y="${y - originY + h - 10}">${escape(bundleId)}, ${pid}</text>
</g>`;
  const own = windows.filter((window) => window.displayId === displayId).reverse();
  return `<h2>getWindowList()</h2>
${windows.length > 0 ? table(windows) : '<p>There are none.</p>'}
<svg class="windows" viewBox="0 0 ${displayWidth} ${displayHeight}" width="${picture.width}">
<image href="${escape(picture.name)}" width="${displayWidth}" height="${displayHeight}"/>
${own.map(outline).join('\n')}
</svg>`;
}

/**
 * `displays` as listDisplays gives them; pictures with name, size, bytes and milliseconds; `without`,
 * if any, is one that leaves out the application `leftOut`; `acted`, if any, one after the `steps`;
 * `listed` is one with its `windows` as getWindowList gives them. `shared`, if any, are the steps with
 * the clipboard; `steered`, if any, has steps and pictures of a program that is `opened`, `hidden`, and
 * `shown` again.
 */
export function renderReport({ displays, display, region, firstMilliseconds, ...rest }) {
  const { without, acted, shared, steered, listed } = rest;
  return `<!doctype html>
<html lang="en">
<meta charset="utf-8">
<title>deskhand: what it sees and does</title>
<style>
body { font: 16px/1.5 sans-serif; margin: 2em; }
table { border-collapse: collapse; }
th, td { border: 1px solid #ccc; padding: 0.2em 0.6em; text-align: left; }
figure { margin: 2em 0; }
img { max-width: 100%; height: auto; border: 1px solid #ccc; }
.pair { display: flex; gap: 1em; margin-top: 1em; }
.pair figure { flex: 1; margin: 0; }
.windows { max-width: 100%; height: auto; border: 1px solid #ccc; }
.windows rect { fill: none; stroke: #e02080; stroke-width: 4; }
.windows text { font: bold 22px sans-serif; fill: #e02080; stroke: #fff; stroke-width: 4; paint-order: stroke; }
</style>
<h1>deskhand: what it sees and does</h1>
<h2>listDisplays()</h2>
${table(displays)}
<h2>captureDisplay([], 0.8)</h2>
<p>The first call of the process took ${firstMilliseconds.toFixed(1)} ms; this is a later one.</p>
${figure(`Display ${display.displayId}`, display)}
<h2>captureRegion([], ${region.x}, ${region.y}, ${region.width}, ${region.height}, …)</h2>
${figure('A region, a pixel for a point', region)}
${comparison(display, without)}
${actions(display, acted)}
${clipboard(shared)}
${programs(steered)}
${windowList(listed)}
</html>
`;
}
