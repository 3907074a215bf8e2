// The way of the vehicle, seen from above, north up: no map behind it, so no network.

const kTrack = { width: 660, height: 440, margin: 48 };
const kMetresPerE4min = 0.1852;

function projection(track) {
  let [south, north, west, east] = [Infinity, -Infinity, Infinity, -Infinity];
  for (const part of track) {
    for (const lat of part.lat) [south, north] = [Math.min(south, lat), Math.max(north, lat)];
    for (const lon of part.lon) [west, east] = [Math.min(west, lon), Math.max(east, lon)];
  }
  const [midLat, midLon] = [(south + north) / 2, (west + east) / 2];
  const shrink = Math.max(Math.cos(midLat / 600000 * Math.PI / 180), 0.01);
  const least = 100 / kMetresPerE4min;
  const scale = Math.min((kTrack.width - 2 * kTrack.margin) / Math.max((east - west) * shrink, least),
      (kTrack.height - 2 * kTrack.margin) / Math.max(north - south, least));
  return {
    x: (lon) => kTrack.width / 2 + (lon - midLon) * shrink * scale,
    y: (lat) => kTrack.height / 2 - (lat - midLat) * scale,
    lon: (x) => midLon + (x - kTrack.width / 2) / (shrink * scale),
    lat: (y) => midLat - (y - kTrack.height / 2) / scale,
    metresPerPixel: kMetresPerE4min / scale,
  };
}

// Where the vehicle was; where that is not known, where it was last, or first.
function placeAt(track, ms) {
  let place = null;
  for (const part of track) {
    const i = lastNotAbove(part.t, ms);
    if (i < 0) return place || { lat: part.lat[0], lon: part.lon[0] };
    const next = Math.min(i + 1, part.t.length - 1);
    const share = next === i ? 0 : (ms - part.t[i]) / Math.max(part.t[next] - part.t[i], 1);
    place = { lat: part.lat[i] + share * (part.lat[next] - part.lat[i]), lon: part.lon[i] + share * (part.lon[next] - part.lon[i]) };
  }
  return place;
}

function trackLength(track) {
  let metres = 0;
  for (const part of track) {
    for (let i = 1; i < part.t.length; ++i) {
      const shrink = Math.cos(part.lat[i] / 600000 * Math.PI / 180);
      metres += Math.hypot(part.lat[i] - part.lat[i - 1], (part.lon[i] - part.lon[i - 1]) * shrink) * kMetresPerE4min;
    }
  }
  return metres;
}

function drawScale(svg, metresPerPixel) {
  const most = 130 * metresPerPixel;
  const power = Math.pow(10, Math.floor(Math.log10(most)));
  const metres = [5, 2, 1].map((factor) => factor * power).find((length) => length <= most);
  const [x, y, width] = [16, kTrack.height - 14, metres / metresPerPixel];
  add(svg, 'path', { d: `M${x},${y - 5}V${y}H${x + width}V${y - 5}`, fill: 'none', stroke: kInk, 'stroke-width': 1.5 });
  add(svg, 'text', { x: x + width + 7, y: y + 1 }, distance(metres));
  const right = kTrack.width - 20;
  add(svg, 'path', { d: `M${right},12l6,16l-6,-4l-6,4z`, fill: kInk });
  add(svg, 'text', { x: right, y: 41, 'text-anchor': 'middle', class: 'small' }, 'N');
}

// Lines of latitude and longitude.
function drawGraticule(svg, at) {
  const ticks = (from, to) => {
    const values = valueTicks(from / 600000, to / 600000, 3);
    const digits = Math.max(0, Math.ceil(-Math.log10(values[1] - values[0]) - 1e-9));
    return values.map((value) => [value * 600000, digits]);
  };
  for (const [lat, digits] of ticks(at.lat(kTrack.height), at.lat(0))) {
    const y = at.y(lat);
    if (y < 30 || y > kTrack.height - 36) continue;
    add(svg, 'line', { x1: 0, x2: kTrack.width, y1: y, y2: y, stroke: kGrid });
    add(svg, 'text', { x: 6, y: y - 3, class: 'small' }, degrees(lat, 'N', 'S', digits));
  }
  for (const [lon, digits] of ticks(at.lon(0), at.lon(kTrack.width))) {
    const x = at.x(lon);
    if (x < 70 || x > kTrack.width - 90) continue;
    add(svg, 'line', { x1: x, x2: x, y1: 0, y2: kTrack.height, stroke: kGrid });
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

// A line for each stretch with or without recording, and for those without a fix.
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

function drawTrack(parent, run) {
  const svg = figure(parent, kTrack.width, kTrack.height, 'the track');
  const at = projection(run.track);
  drawGraticule(svg, at);
  drawWays(svg, run, at);
  drawSigns(svg, run, at);
  drawScale(svg, at.metresPerPixel);
  const dot = add(svg, 'circle', { r: 6, fill: '#fff', stroke: kInk, 'stroke-width': 2.5, visibility: 'hidden', class: 'screen' });
  run.showPlace = (ms) => {
    dot.setAttribute('visibility', ms === null ? 'hidden' : 'visible');
    if (ms === null) return;
    const { lat, lon } = placeAt(run.track, ms);
    dot.setAttribute('cx', at.x(lon));
    dot.setAttribute('cy', at.y(lat));
  };
  // When the vehicle was nearest to a point of the picture; null where it was not near.
  run.whenAt = (x, y) => {
    let [nearest, least] = [null, 30];
    for (const part of run.track) {
      part.t.forEach((t, i) => {
        const away = Math.hypot(at.x(part.lon[i]) - x, at.y(part.lat[i]) - y);
        if (away < least) [nearest, least] = [t, away];
      });
    }
    return nearest;
  };
  return svg;
}
