// Values over time: a line, and a band from minimum to maximum where a point stands for many values.

let clips = 0;  // each clip path has its own id

const kHeights = { Speed: 132, Altitude: 60, Satellites: 60 };
const kChartHeight = 92;

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

// The visible points of a part, and one more point on each side.
function inView(part, view) {
  const from = Math.max(lastNotAbove(part.t, view.from), 0);
  const to = lastNotAbove(part.t, view.to) + 2;
  return { t: part.t.slice(from, to), min: part.min.slice(from, to), max: part.max.slice(from, to) };
}

// The corners of a line: straight from point to point, or steps for values that hold until the next one.
function corners(x, y, isSteps) {
  return x.flatMap((at, i) => (isSteps && i > 0 ? [at + ',' + y[i - 1], at + ',' + y[i]] : [at + ',' + y[i]]));
}

function drawPart(svg, whole, view, y, style) {
  const part = inView(whole, view);
  const x = part.t.map((t) => timeToX(view, t).toFixed(1));
  const heights = (values) => values.map((value) => y(value).toFixed(1));
  const inner = { 'clip-path': `url(#${style.clip})` };
  const isBand = part.min.some((value, i) => value !== part.max[i]);
  if (isBand) {
    const upper = corners(x, heights(part.max), style.isSteps);
    const lower = corners(x, heights(part.min), style.isSteps).reverse();
    add(svg, 'polygon', { points: upper.concat(lower).join(' '), fill: style.colour, stroke: style.colour,
      'stroke-width': 0.6, 'fill-opacity': 0.35, ...inner });
  }
  const shown = x.filter((at) => at >= kPlot.left && at <= plotEnd(view));
  const isSparse = shown.length > 0 && plotWidth(view) / shown.length > 24;
  if (isSparse || x.length === 1) {
    x.forEach((at, i) => add(svg, 'circle', { cx: at, cy: y((part.min[i] + part.max[i]) / 2), r: 2.2, fill: style.colour, ...inner }));
  }
  const middle = corners(x, heights(part.min.map((low, i) => (low + part.max[i]) / 2)), style.isSteps);
  add(svg, 'polyline', { points: middle.join(' '), fill: 'none', stroke: style.colour, 'stroke-width': isBand ? 0.8 : style.width,
    'stroke-dasharray': style.dash, 'stroke-linejoin': 'round', ...inner });
}

// A legend says which line is which.
function drawLegend(parent, lines, style) {
  const legend = add(parent, 'span', { class: 'legend' });
  lines.forEach((line, i) => {
    const item = add(legend, 'span');
    const svg = add(item, 'svg', { viewBox: '0 0 24 10', width: 24, height: 10, 'aria-hidden': 'true' });
    add(svg, 'line', { x1: 0, x2: 24, y1: 5, y2: 5, stroke: style(i).colour, 'stroke-width': 2, 'stroke-dasharray': style(i).dash });
    add(item, 'span', {}, lineName(line));
  });
}

function drawValueAxis(svg, view, ticks, y) {
  for (const value of ticks) {
    add(svg, 'line', { x1: kPlot.left, x2: plotEnd(view), y1: y(value), y2: y(value), stroke: kGrid });
    add(svg, 'text', { x: kPlot.left - 6, y: y(value) + 4, 'text-anchor': 'end', class: 'small' }, number(value));
  }
}

function drawChart(parent, run, chart, view) {
  const [top, height] = [9, kHeights[chart.name] || kChartHeight];
  const bottom = top + height;
  const { row, cell, name, note } = addRow(parent, chart.name);
  row.classList.add('chart');
  add(name, 'span', { class: 'unit' }, chart.unit);
  const svg = drawPicture(cell, run, view, bottom + 9, chart.name + ' over time');
  const clip = 'plot-' + ++clips;
  add(add(add(svg, 'defs'), 'clipPath', { id: clip }), 'rect',
      { x: kPlot.left, y: top - 2, width: plotWidth(view), height: height + 4 });
  const { low, high } = extent(chart.lines);
  const ticks = valueTicks(low, high, height < 70 ? 2 : 4, chart.unit === 'in use' ? 1 : 0);
  const [first, last] = [ticks[0], ticks[ticks.length - 1]];
  const y = (value) => bottom - (value - first) / (last - first) * height;
  const style = (i) => ({ colour: kLines[i % kLines.length], dash: kDashes[i % kDashes.length],
    width: i === 0 ? 2 : 1.5, clip, isSteps: chart.lines[i].isSteps });
  drawValueAxis(svg, view, ticks, y);
  chart.lines.forEach((line, i) => line.parts.forEach((part) => drawPart(svg, part, view, y, style(i))));
  drawLegend(note, chart.lines, style);
}
