// States over time, one lane each.

const kLane = { height: 18, bar: 11, most: 400, columns: 420 };

function drawBar(svg, run, view, y, bar, colour) {
  const place = span(view, bar.from, bar.to, 1.5);
  if (!place) return;
  const style = bar.level === 2 ? { fill: colour, 'fill-opacity': bar.share >= 0.995 ? 1 : 0.3 + 0.7 * bar.share }
    : bar.level === 1 ? { fill: '#fff', stroke: colour } : { fill: '#000', 'fill-opacity': 0 };
  const rect = add(svg, 'rect', { ...place, y: y + 3, height: kLane.bar, ...style });
  hint(rect, clockTime(run, bar.from) + ' \u2013 ' + clockTime(run, bar.to) + ': ' + bar.text);
}

// Where there are more bars than one can tell apart: how much of the time of each column was on.
function drawColumns(svg, view, y, shown, colour) {
  const width = kPlot.inner / kLane.columns;
  const share = new Float64Array(kLane.columns);
  for (const bar of shown) {
    if (bar.level < 2) continue;
    const from = Math.max((timeToX(view, bar.from) - kPlot.left) / width, 0);
    const to = Math.min((timeToX(view, bar.to) - kPlot.left) / width, kLane.columns);
    for (let i = Math.floor(from); i < to; ++i) share[i] += bar.share * (Math.min(to, i + 1) - Math.max(from, i));
  }
  share.forEach((value, i) => {
    if (value > 0) add(svg, 'rect', { x: kPlot.left + i * width, y: y + 3, width: width + 0.3, height: kLane.bar, fill: colour,
      'fill-opacity': Math.min(0.25 + 0.75 * value, 1) });
  });
}

function drawLane(svg, run, view, lane, y, colour) {
  const known = span(view, lane.known, view.to, 0);
  if (known) add(svg, 'line', { x1: known.x, x2: kPlot.end, y1: y + 8.5, y2: y + 8.5, stroke: '#b9c2cb' });
  const shown = lane.bars.filter((bar) => bar.to >= view.from && bar.from <= view.to);
  if (shown.length > kLane.most) drawColumns(svg, view, y, shown, lane.colour || colour);
  else shown.forEach((bar) => drawBar(svg, run, view, y, bar, lane.colour || colour));
  add(svg, 'text', { x: kPlot.left - 10, y: y + 12.5, 'text-anchor': 'end' }, words(lane.name));
  add(svg, 'text', { x: kPlot.end + 10, y: y + 12.5, class: 'small' }, lane.summary);
}

// A figure for each group, so that a page may end between them.
function drawGroup(parent, run, view, group, place) {
  const top = place.isFirst ? 42 : 0;
  const bottom = top + kLane.height * (group.lanes.length + 1) + 3;
  const svg = figure(parent, kPlot.width, bottom + (place.isLast ? 24 : 0), group.name + ' over time');
  const axis = place.isFirst ? 20 : 0;
  drawRecording(svg, run, view, axis, bottom);
  drawGrid(svg, run, view, axis, bottom);
  drawMarks(svg, run, view, axis, bottom);
  if (place.isFirst) {
    drawTimeAxis(svg, run, view, axis, true);
    add(svg, 'text', { x: kPlot.left - 10, y: 36, 'text-anchor': 'end' }, 'bookmarks, crashes');
    drawFlags(svg, run, view, 24);
  }
  add(svg, 'text', { x: 0, y: top + 14, class: 'name' }, group.name);
  group.lanes.forEach((lane, i) => drawLane(svg, run, view, lane, top + kLane.height * (i + 1), kGroupColours[group.name]));
  if (place.isLast) drawTimeAxis(svg, run, view, bottom);
}

function drawGroups(parent, run, view) {
  run.groups.forEach((group, i) => drawGroup(parent, run, view, group,
      { isFirst: i === 0, isLast: i + 1 === run.groups.length }));
}
