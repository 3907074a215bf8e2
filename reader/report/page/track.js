// The map: the track of the vehicle from above, north up. There is no street map, which would need a network.

function drawScale(svg, at) {
  const most = 0.2 * at.width * at.metresPerPixel;
  const power = Math.pow(10, Math.floor(Math.log10(most)));
  const metres = [5, 2, 1].map((factor) => factor * power).find((length) => length <= most);
  const [x, y, width] = [16, at.height - 14, metres / at.metresPerPixel];
  add(svg, 'path', { d: `M${x},${y - 5}V${y}H${x + width}V${y - 5}`, fill: 'none', stroke: kInk, 'stroke-width': 1.5 });
  add(svg, 'text', { x: x + width + 7, y: y + 1 }, distance(metres));
  const right = at.width - 20;
  add(svg, 'path', { d: `M${right},12l6,16l-6,-4l-6,4z`, fill: kInk });
  add(svg, 'text', { x: right, y: 41, 'text-anchor': 'middle', class: 'small' }, 'N');
}

// Lines of latitude and longitude.
function drawGraticule(svg, at) {
  const count = at.width < 500 ? 2 : 3;
  const ticks = (from, to) => {
    const values = valueTicks(from / 600000, to / 600000, count);
    const digits = Math.max(0, Math.ceil(-Math.log10(values[1] - values[0]) - 1e-9));
    return values.map((value) => [value * 600000, digits]);
  };
  for (const [lat, digits] of ticks(at.lat(at.height), at.lat(0))) {
    const y = at.y(lat);
    if (y < 30 || y > at.height - 36) continue;
    add(svg, 'line', { x1: 0, x2: at.width, y1: y, y2: y, stroke: kGrid });
    add(svg, 'text', { x: 6, y: y - 3, class: 'small' }, degrees(lat, 'N', 'S', digits));
  }
  for (const [lon, digits] of ticks(at.lon(0), at.lon(at.width))) {
    const x = at.x(lon);
    if (x < 70 || x > at.width - 90) continue;
    add(svg, 'line', { x1: x, x2: x, y1: 0, y2: at.height, stroke: kGrid });
    add(svg, 'text', { x: x + 4, y: 14, class: 'small' }, degrees(lon, 'E', 'W', digits));
  }
}

const kWays = {
  recording: { stroke: kRecording, 'stroke-width': 4 },
  other: { stroke: kNotRecording, 'stroke-width': 2 },
  unknown: { stroke: kNotRecording, 'stroke-width': 1.5, 'stroke-dasharray': '2 4' },
};

function drawWay(svg, points, way) {
  const line = points.length === 1 ? points.concat(points) : points;
  add(svg, 'polyline', { points: line.join(' '), fill: 'none', 'stroke-linejoin': 'round', 'stroke-linecap': 'round', ...kWays[way] });
}

function isRecording(run, ms) {
  const bar = run.recording[lastNotAbove(run.recording.map((one) => one.from), ms)];
  return bar !== undefined && ms < bar.to;
}

// A line for each part with or without recording, and a dotted line for each part without a fix.
function drawWays(svg, run, at) {
  let before = null;
  for (const part of run.track) {
    const points = part.t.map((_, i) => at.x(part.lon[i]).toFixed(1) + ',' + at.y(part.lat[i]).toFixed(1));
    const ways = part.t.map((t) => (isRecording(run, t) ? 'recording' : 'other'));
    if (before) drawWay(svg, [before, points[0]], 'unknown');
    let from = 0;
    for (let i = 1; i <= points.length; ++i) {
      if (i < points.length && ways[i] === ways[from]) continue;
      drawWay(svg, points.slice(from, i + 1), ways[from]);
      from = i;
    }
    before = points[points.length - 1];
  }
}

// Draws the cursor's dot, dashed if the position is unknown. Returns a function that moves it.
function drawDot(svg, run, at) {
  const dot = add(svg, 'circle', { r: 6, fill: kPaper, stroke: kInk, 'stroke-width': 2.5, visibility: 'hidden', class: 'dot screen' });
  return (ms) => {
    dot.setAttribute('visibility', ms === null ? 'hidden' : 'visible');
    if (ms === null) return;
    const place = placeAt(run, ms);
    dot.setAttribute('cx', at.x(place.lon));
    dot.setAttribute('cy', at.y(place.lat));
    dot.setAttribute('stroke-dasharray', place.isKnown ? 'none' : '2 3');
  };
}

// Draws the map, as wide as its panel.
function drawMap(panel, run, view) {
  panel.textContent = '';
  const width = Math.max(panel.clientWidth, 200);
  const at = projection(run.track, width, Math.round(Math.max(width * 2 / 3, 260)));
  const svg = figure(panel, at.width, at.height, 'the track');
  drawGraticule(svg, at);
  drawWays(svg, run, at);
  drawSigns(svg, run, at);
  drawScale(svg, at);
  followMap(svg, run, view, at);
  view.moveDot = drawDot(svg, run, at);
  view.moveDot(view.cursorMs);
}

// Keeps the map as wide as its panel, and the dot at the cursor.
function addMap(panel, run, view) {
  drawMap(panel, run, view);
  view.followers.push((ms) => view.moveDot(ms));
  let width = panel.clientWidth;
  new ResizeObserver(() => {
    if (panel.clientWidth === width || panel.clientWidth === 0) return;
    width = panel.clientWidth;
    drawMap(panel, run, view);
  }).observe(panel);
}
