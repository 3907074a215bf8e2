// Positions of the vehicle, and the projection of the map.

const kMetresPerE4min = 0.1852;

// A projection of the track onto width by height pixels, north up, with a margin for labels.
function projection(track, width, height) {
  const margin = Math.min(48, width / 9);
  let [south, north, west, east] = [Infinity, -Infinity, Infinity, -Infinity];
  for (const part of track) {
    for (const lat of part.lat) [south, north] = [Math.min(south, lat), Math.max(north, lat)];
    for (const lon of part.lon) [west, east] = [Math.min(west, lon), Math.max(east, lon)];
  }
  const [midLat, midLon] = [(south + north) / 2, (west + east) / 2];
  const shrink = Math.max(Math.cos(midLat / 600000 * Math.PI / 180), 0.01);
  const least = 100 / kMetresPerE4min;
  const scale = Math.min((width - 2 * margin) / Math.max((east - west) * shrink, least),
      (height - 2 * margin) / Math.max(north - south, least));
  return {
    width,
    height,
    x: (lon) => width / 2 + (lon - midLon) * shrink * scale,
    y: (lat) => height / 2 - (lat - midLat) * scale,
    lon: (x) => midLon + (x - width / 2) / (shrink * scale),
    lat: (y) => midLat - (y - height / 2) / scale,
    metresPerPixel: kMetresPerE4min / scale,
  };
}

// The time when the vehicle left a point of the track.
function leftAt(part, i) {
  return part.t[i] + part.stayMs[i];
}

// The position between two points of a part. The vehicle stays at the first point until leftAt.
function placeBetween(part, i, ms) {
  const next = Math.min(i + 1, part.t.length - 1);
  const left = leftAt(part, i);
  const share = next === i || ms <= left ? 0 : (ms - left) / Math.max(part.t[next] - left, 1);
  return { lat: part.lat[i] + share * (part.lat[next] - part.lat[i]), lon: part.lon[i] + share * (part.lon[next] - part.lon[i]) };
}

// The age at which a position expires.
function placeAgeMs(run) {
  const gps = run.gaps.find((source) => source.source === 'gps');
  return Math.max(2000, gps ? 5 * gps.usualMs : 0);
}

// The position at a time; if that is unknown, the last position before it, else the first of the run.
function placeAt(run, ms) {
  let last = null;
  for (const part of run.track) {
    const i = lastNotAbove(part.t, ms);
    if (i < 0) return last || { lat: part.lat[0], lon: part.lon[0], isKnown: false };
    const isEnd = i === part.t.length - 1;
    const place = placeBetween(part, i, ms);
    last = { ...place, isKnown: !isEnd || ms - leftAt(part, i) <= placeAgeMs(run) };
    if (!isEnd) return last;
  }
  return last;
}

// The point of the line from a to b nearest to p, as a share of the line, and its distance from p.
function nearestOnLine(a, b, p) {
  const [dx, dy] = [b.x - a.x, b.y - a.y];
  const length = dx * dx + dy * dy;
  const share = length === 0 ? 0 : Math.min(Math.max(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0), 1);
  return { share, away: Math.hypot(a.x + share * dx - p.x, a.y + share * dy - p.y) };
}

// The time when the vehicle was nearest to a point of the map; null if it was never near.
function whenNear(run, at, p) {
  let [nearest, least] = [null, 30];
  for (const part of run.track) {
    const points = part.t.map((_, i) => ({ x: at.x(part.lon[i]), y: at.y(part.lat[i]) }));
    for (let i = 0; i < points.length; ++i) {
      const next = Math.min(i + 1, points.length - 1);
      const { share, away } = nearestOnLine(points[i], points[next], p);
      if (away >= least) continue;
      least = away;
      nearest = share === 0 ? part.t[i] : leftAt(part, i) + share * (part.t[next] - leftAt(part, i));
    }
  }
  return nearest;
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
