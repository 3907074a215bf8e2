// The common time axis. All plots of a run have the same width and show the same time range, view.from to
// view.to. view.width is the width in pixels.

const kPlot = { left: 46, right: 12 };

function plotWidth(view) {
  return view.width - kPlot.left - kPlot.right;
}

function plotEnd(view) {
  return view.width - kPlot.right;
}

function timeToX(view, ms) {
  return kPlot.left + (ms - view.from) / (view.to - view.from) * plotWidth(view);
}

function xToTime(view, x) {
  return view.from + (x - kPlot.left) / plotWidth(view) * (view.to - view.from);
}

// Converts a width in pixels to milliseconds.
function pixelsMs(view, pixels) {
  return pixels / plotWidth(view) * (view.to - view.from);
}

// The visible part of a time range, at least `least` pixels wide; null if no part is visible.
function span(view, from, to, least) {
  if (to < view.from || from > view.to) return null;
  const x1 = Math.max(timeToX(view, from), kPlot.left);
  const x2 = Math.min(timeToX(view, to), plotEnd(view));
  return { x: Math.min(x1, plotEnd(view) - least), width: Math.max(x2 - x1, least) };
}

const kTimeSteps = [1, 2, 5, 10, 20, 50, 100, 200, 500].concat(
    [1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 10800, 21600, 43200, 86400, 172800, 432000,
      864000, 2592000, 8640000, 31536000].map((seconds) => seconds * 1000));

function timeTicks(run, view) {
  const labelPixels = 84;
  const most = Math.max(Math.floor(plotWidth(view) / labelPixels), 2);
  const step = kTimeSteps.find((s) => (view.to - view.from) / s <= most) || (view.to - view.from) / most;
  const origin = run.utcMs === null ? 0 : run.utcMs;
  const ticks = [];
  for (let at = Math.ceil((view.from + origin) / step) * step - origin; at <= view.to && ticks.length < 50; at += step)
    ticks.push(at);
  return { ticks, step };
}

function tickLabel(run, ms, step) {
  if (run.utcMs !== null && (step >= 86400000 || (run.utcMs + ms) % 86400000 === 0)) return shortDate(run, ms);
  const label = clockTime(run, ms, step < 1000 ? 3 : 0);
  return step >= 60000 ? label.slice(0, -3) : label;
}

function drawGrid(svg, run, view, top, bottom) {
  for (const at of timeTicks(run, view).ticks) {
    const x = timeToX(view, at);
    add(svg, 'line', { x1: x, x2: x, y1: top, y2: bottom, stroke: kGrid });
  }
}

// The name of the axis: UTC with the date, or time since the start.
function axisName(run, view) {
  return run.utcMs === null ? 'since the start' : 'UTC, ' + shortDate(run, Math.max(view.from, run.beginMs), true);
}

// Draws the line at y, with the labels above it.
function drawTimeAxis(svg, run, view, y) {
  const { ticks, step } = timeTicks(run, view);
  add(svg, 'line', { x1: kPlot.left, x2: plotEnd(view), y1: y, y2: y, stroke: kInk });
  for (const at of ticks) {
    const x = timeToX(view, at);
    const isLast = x > view.width - 40;
    add(svg, 'line', { x1: x, x2: x, y1: y, y2: y - 4, stroke: kInk });
    add(svg, 'text', { x: isLast ? view.width : x, y: y - 8, 'text-anchor': isLast ? 'end' : 'middle', class: 'small' },
        tickLabel(run, at, step));
  }
}

// About `count` round numbers from low to high.
function valueTicks(low, high, count, leastStep = 0) {
  const raw = (high - low) / count;
  const power = Math.pow(10, Math.floor(Math.log10(raw)));
  const step = [1, 2, 5, 10, 20].map((factor) => factor * power).find((s) => s >= raw && s >= leastStep) || leastStep;
  const ticks = [];
  for (let i = Math.floor(low / step); i <= Math.ceil(high / step) && ticks.length < 50; ++i) ticks.push(i * step);
  return ticks;
}
