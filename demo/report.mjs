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

/**
 * `displays` as listDisplays gives them; pictures with name, size, bytes and milliseconds; `without`,
 * if any, is one that leaves out the application `leftOut`; `acted`, if any, one after the `steps`.
 */
export function renderReport({ displays, display, region, without, acted, firstMilliseconds }) {
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
.pair { display: flex; gap: 1em; }
.pair figure { flex: 1; margin: 0; }
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
</html>
`;
}
