// States over time, one lane each.

const kLane = { height: 19, top: 4, bar: 11, most: 400, columns: 420 };

function drawBar(svg, run, view, bar, colour) {
  const place = span(view, bar.from, bar.to, 1.5);
  if (!place) return;
  const style = bar.level === 2 ? { fill: colour, 'fill-opacity': bar.share >= 0.995 ? 1 : 0.3 + 0.7 * bar.share }
    : bar.level === 1 ? { fill: kPaper, stroke: colour } : { fill: kInk, 'fill-opacity': 0 };
  const rect = add(svg, 'rect', { ...place, y: kLane.top, height: kLane.bar, ...style });
  hint(rect, clockTime(run, bar.from) + ' \u2013 ' + clockTime(run, bar.to) + ': ' + bar.text);
}

// For more bars than fit: columns whose opacity is the share of "on" time.
function drawColumns(svg, view, shown, colour) {
  const width = plotWidth(view) / kLane.columns;
  const share = new Float64Array(kLane.columns);
  for (const bar of shown) {
    if (bar.level < 2) continue;
    const from = Math.max((timeToX(view, bar.from) - kPlot.left) / width, 0);
    const to = Math.min((timeToX(view, bar.to) - kPlot.left) / width, kLane.columns);
    for (let i = Math.floor(from); i < to; ++i) share[i] += bar.share * (Math.min(to, i + 1) - Math.max(from, i));
  }
  share.forEach((value, i) => {
    if (value > 0) add(svg, 'rect', { x: kPlot.left + i * width, y: kLane.top, width: width + 0.3, height: kLane.bar,
      fill: colour, 'fill-opacity': Math.min(0.25 + 0.75 * value, 1) });
  });
}

function drawLane(parent, run, view, lane, colour) {
  const { row, cell } = addRow(parent, words(lane.name), lane.summary);
  row.classList.add('lane');
  const svg = drawPicture(cell, run, view, kLane.height, words(lane.name) + ' over time: ' + lane.summary);
  const [known, y] = [span(view, lane.known, view.to, 0), kLane.top + kLane.bar / 2];
  if (known) add(svg, 'line', { x1: known.x, x2: plotEnd(view), y1: y, y2: y, stroke: 'var(--line)' });
  const shown = lane.bars.filter((bar) => bar.to >= view.from && bar.from <= view.to);
  if (shown.length > kLane.most) drawColumns(svg, view, shown, lane.colour || colour);
  else shown.forEach((bar) => drawBar(svg, run, view, bar, lane.colour || colour));
}

function drawGroup(parent, run, view, group) {
  const block = add(parent, 'div', { class: 'group' });
  const { row, cell } = addRow(block, group.name);
  row.classList.add('head');
  drawPicture(cell, run, view, 22, group.name);
  for (const lane of group.lanes) drawLane(block, run, view, lane, kGroupColours[group.name]);
}
