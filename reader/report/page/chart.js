// Values over time: a line, and a band from the lowest to the highest where many values fall into one place.

let clips = 0;  // each has an id of its own

const kHeights = { Speed: 116, Altitude: 44, Satellites: 44 };

function extent(lines) {
  let low = Infinity;
  let high = -Infinity;
  for (const line of lines) {
    for (const part of line.parts) {
      for (const value of part.min) low = Math.min(low, value);
      for (const value of part.max) high = Math.max(high, value);
    }
  }
  if (low >= 0 && low < high * 0.6) low = 0;
  const least = Math.max(1, Math.abs(high) * 1e-6);
  return high - low >= least ? { low, high } : { low: low >= 0 ? Math.max(low - least, 0) : low - least, high: high + least };
}

function drawPart(svg, part, view, y, style) {
  const x = part.t.map((t) => timeToX(view, t).toFixed(1));
  const inner = { 'clip-path': `url(#${style.clip})` };
  const isBand = part.min.some((value, i) => value !== part.max[i]);
  if (isBand) {
    const upper = x.map((at, i) => at + ',' + y(part.max[i]).toFixed(1));
    const lower = x.map((at, i) => at + ',' + y(part.min[i]).toFixed(1)).reverse();
    add(svg, 'polygon', { points: upper.concat(lower).join(' '), fill: style.colour, stroke: style.colour,
      'stroke-width': 0.6, 'fill-opacity': 0.35, ...inner });
  }
  if (part.t.length === 1) {
    add(svg, 'circle', { cx: x[0], cy: y(part.max[0]), r: 2, fill: style.colour, ...inner });
    return;
  }
  const middle = x.map((at, i) => at + ',' + y((part.min[i] + part.max[i]) / 2).toFixed(1));
  add(svg, 'polyline', { points: middle.join(' '), fill: 'none', stroke: style.colour, 'stroke-width': isBand ? 0.8 : style.width,
    'stroke-dasharray': style.dash, 'stroke-linejoin': 'round', ...inner });
}

function drawLegend(svg, lines, top, style) {
  lines.forEach((line, i) => {
    const y = top + 10 + 17 * i;
    add(svg, 'line', { x1: kPlot.end + 10, x2: kPlot.end + 34, y1: y - 4, y2: y - 4, stroke: style(i).colour,
      'stroke-width': 2, 'stroke-dasharray': style(i).dash });
    add(svg, 'text', { x: kPlot.end + 40, y }, line.name.replace('temperature', 'sensor'));
  });
}

function drawValueAxis(svg, ticks, y) {
  for (const value of ticks) {
    add(svg, 'line', { x1: kPlot.left, x2: kPlot.end, y1: y(value), y2: y(value), stroke: kGrid });
    add(svg, 'text', { x: kPlot.left - 7, y: y(value) + 4, 'text-anchor': 'end', class: 'small' }, number(value));
  }
}

function drawChart(parent, run, chart, view, place) {
  const top = place.isFirst ? 26 : 9;
  const bottom = top + Math.max(kHeights[chart.name] || 82, 17 * chart.lines.length);
  const svg = figure(parent, kPlot.width, bottom + (place.isLast ? 24 : 9), chart.name + ' over time');
  const clip = 'plot-' + ++clips;
  add(add(add(svg, 'defs'), 'clipPath', { id: clip }), 'rect',
      { x: kPlot.left, y: top - 2, width: kPlot.inner, height: bottom - top + 4 });
  const { low, high } = extent(chart.lines);
  const ticks = valueTicks(low, high, bottom - top < 60 ? 2 : 4, chart.unit === 'in use' ? 1 : 0);
  const [first, last] = [ticks[0], ticks[ticks.length - 1]];
  const y = (value) => bottom - (value - first) / (last - first) * (bottom - top);
  const style = (i) => ({ colour: kLines[i % kLines.length], dash: kDashes[i % kDashes.length],
    width: i === 0 ? 2.2 : 1.5, clip });
  drawRecording(svg, run, view, top, bottom);
  drawGrid(svg, run, view, top, bottom);
  drawValueAxis(svg, ticks, y);
  add(svg, 'text', { x: 0, y: top + 12, class: 'name' }, chart.name);
  add(svg, 'text', { x: 0, y: top + 27, class: 'small' }, chart.unit);
  drawMarks(svg, run, view, top, bottom);
  chart.lines.forEach((line, i) => line.parts.forEach((part) => drawPart(svg, part, view, y, style(i))));
  drawLegend(svg, chart.lines, top, style);
  if (place.isFirst) drawTimeAxis(svg, run, view, top, true);
  if (place.isLast) drawTimeAxis(svg, run, view, bottom);
}

function drawCharts(parent, run, view) {
  run.charts.forEach((chart, i) => drawChart(parent, run, chart, view,
      { isFirst: i === 0, isLast: i + 1 === run.charts.length }));
}
