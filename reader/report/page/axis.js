// The common time axis: all plots of a run have the same width and the same stretch of time.

const kPlot = { width: 1112, left: 142, right: 138 };
kPlot.inner = kPlot.width - kPlot.left - kPlot.right;
kPlot.end = kPlot.left + kPlot.inner;

function timeToX(view, ms) {
  return kPlot.left + (ms - view.from) / (view.to - view.from) * kPlot.inner;
}

function xToTime(view, x) {
  return view.from + (x - kPlot.left) / kPlot.inner * (view.to - view.from);
}

// The stretch of a plot between two times; null where nothing of it shows.
function span(view, from, to, least) {
  const x1 = Math.max(timeToX(view, from), kPlot.left);
  const x2 = Math.min(timeToX(view, to), kPlot.end);
  return x2 < kPlot.left || x1 > kPlot.end ? null : { x: Math.min(x1, kPlot.end - least), width: Math.max(x2 - x1, least) };
}

const kTimeSteps = [1, 2, 5, 10, 20, 50, 100, 200, 500].concat(
    [1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 10800, 21600, 43200, 86400, 172800, 432000,
      864000, 2592000, 8640000, 31536000].map((seconds) => seconds * 1000));

function timeTicks(run, view) {
  const most = 10;
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

// With its labels below, or above.
function drawTimeAxis(svg, run, view, y, above = false) {
  const { ticks, step } = timeTicks(run, view);
  const [tick, text] = above ? [y - 4, y - 8] : [y + 4, y + 16];
  add(svg, 'line', { x1: kPlot.left, x2: kPlot.end, y1: y, y2: y, stroke: kInk });
  for (const at of ticks) {
    const x = timeToX(view, at);
    add(svg, 'line', { x1: x, x2: x, y1: y, y2: tick, stroke: kInk });
    add(svg, 'text', { x, y: text, 'text-anchor': 'middle', class: 'small' }, tickLabel(run, at, step));
  }
  const what = run.utcMs === null ? 'time since the begin' : 'UTC, ' + shortDate(run, Math.max(view.from, run.beginMs), true);
  add(svg, 'text', { x: 0, y: text, class: 'small' }, what);
}

// Round numbers from low to high, about `count` of them.
function valueTicks(low, high, count, leastStep = 0) {
  const raw = (high - low) / count;
  const power = Math.pow(10, Math.floor(Math.log10(raw)));
  const step = [1, 2, 5, 10, 20].map((factor) => factor * power).find((s) => s >= raw && s >= leastStep) || leastStep;
  const ticks = [];
  for (let i = Math.floor(low / step); i <= Math.ceil(high / step) && ticks.length < 50; ++i) ticks.push(i * step);
  return ticks;
}
