// The signs of the map: one for each event on the track.

const kShapes = {
  dot: 'M-4,0a4,4 0 1 0 8,0a4,4 0 1 0 -8,0',
  ring: 'M-5.5,0a5.5,5.5 0 1 0 11,0a5.5,5.5 0 1 0 -11,0',
  play: 'M-4,-5l9,5l-9,5z',
  square: 'M-4,-4h8v8h-8z',
  diamond: 'M0,-6l6,6l-6,6l-6,-6z',
  cross: 'M-7,-4l3,-3l4,4l4,-4l3,3l-4,4l4,4l-3,3l-4,-4l-4,4l-3,-3l4,-4z',
};

const kSigns = {
  start: { shape: 'play', fill: kRecording, about: 'recording starts' },
  stop: { shape: 'square', fill: kRecording, about: 'recording ends' },
  covert: { shape: 'diamond', fill: kCovert, about: 'covert mode on, off' },
  end: { shape: 'ring', fill: kEnds, about: 'first and last position' },
  bookmark: { shape: 'dot', fill: kInk, about: 'bookmark' },
  crash: { shape: 'cross', fill: kCrash, about: 'crash' },
};

function drawShape(svg, kind, x, y) {
  return add(svg, 'path', { d: kSigns[kind].shape && kShapes[kSigns[kind].shape], transform: `translate(${x.toFixed(1)} ${y.toFixed(1)})`,
    fill: kSigns[kind].fill, stroke: kPaper });
}

function kindOf(event) {
  if (event.number) return 'bookmark';
  if (isCrash(event)) return 'crash';
  if (event.source === 'covert') return 'covert';
  if (event.source === 'recording') return event.text === 'started' ? 'start' : 'stop';
  return null;
}

// The signs of a run; the last ones lie on top.
function signsOf(run, at) {
  const most = 400;
  const signs = [];
  const put = (kind, t, label, text, place = placeAt(run, t)) => {
    const { lat, lon } = place;
    signs.push({ kind, x: at.x(lon), y: at.y(lat), label, hint: text + ' at ' + clockTime(run, t) });
  };
  const last = run.track[run.track.length - 1];
  put('end', run.track[0].t[0], 'start', 'first position');
  put('end', last.t[last.t.length - 1], 'end', 'last position');
  for (const event of run.events) {
    const kind = kindOf(event);
    if (!kind || signs.length >= most) continue;
    put(kind, event.t, kind === 'bookmark' ? String(event.number) : kind === 'crash' ? 'crash' : '', eventText(event), event.place);
  }
  const order = Object.keys(kSigns);
  return signs.sort((a, b) => order.indexOf(a.kind) - order.indexOf(b.kind));
}

// Explains the signs and lines.
function drawTrackLegend(parent, run) {
  const legend = add(parent, 'p', { class: 'legend' });
  const entry = (width, text) => {
    const item = add(legend, 'span');
    const svg = add(item, 'svg', { viewBox: `0 0 ${width} 14`, width, height: 14 });
    add(item, 'span', {}, text);
    return svg;
  };
  const lines = { recording: 'recording', other: 'not recording', unknown: 'no fix' };
  for (const [way, text] of Object.entries(lines)) {
    if (way === 'unknown' && run.track.length < 2) continue;
    drawWay(entry(24, text), ['2,7', '22,7'], way);
  }
  for (const kind of Object.keys(kSigns)) if (run.signs.has(kind)) drawShape(entry(16, kSigns[kind].about), kind, 8, 7);
}
