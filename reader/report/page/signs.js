// What happened on the way: a sign for each event, and labels where there is room for them.

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
    fill: kSigns[kind].fill, stroke: '#fff' });
}

function kindOf(event) {
  if (event.number) return 'bookmark';
  if (isCrash(event)) return 'crash';
  if (event.source === 'covert') return 'covert';
  if (event.source === 'recording') return event.text === 'started' ? 'start' : 'stop';
  return null;
}

// Signs that lie over each other share a label.
function signsOf(run, at) {
  const most = 400;
  const signs = [];
  const put = (kind, t, label, text, place = placeAt(run.track, t)) => {
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

// The labels of bookmarks that are closer together than a label is high.
function labels(signs) {
  const all = [];
  for (const sign of signs) {
    if (sign.label === '') continue;
    const near = sign.kind === 'bookmark' &&
        all.find((label) => label.kind === 'bookmark' && Math.hypot(label.x - sign.x, label.y - sign.y) < 12);
    if (!near) all.push({ kind: sign.kind, x: sign.x, y: sign.y, texts: [sign.label] });
    else near.texts.push(sign.label);
  }
  for (const label of all) label.text = label.texts.slice(0, 3).join(', ') + (label.texts.length > 3 ? ' \u2026' : '');
  return all.reverse();
}

function overlaps(boxes, box) {
  return boxes.some((b) => box.x < b.x + b.width && b.x < box.x + box.width && box.y < b.y + b.height && b.y < box.y + box.height);
}

const kPlaces = [[1, -1], [-1, -1], [0, -1], [1, 0], [-1, 0], [1, 1], [-1, 1], [0, 1]];

// Where nothing stands yet, beside a point; null where there is no such place.
function freeBox(boxes, { x, y }, width, height) {
  for (const away of [8, 22, 38]) {
    for (const [dx, dy] of kPlaces) {
      const box = { width, height, x: x + dx * away + (dx - 1) * width / 2, y: y + dy * away + (dy - 1) * height / 2 };
      const isInside = box.x >= 4 && box.x + width <= kTrack.width - 40 && box.y >= 20 && box.y + height <= kTrack.height - 28;
      if (isInside && !overlaps(boxes, box)) return { ...box, isAway: away > 8 };
    }
  }
  return null;
}

function drawLabel(svg, signs, way, label) {
  const [width, height] = [8 + 6.7 * label.text.length, 16];
  const box = freeBox(signs.concat(way), label, width, height) || freeBox(signs, label, width, height);
  if (!box) return;
  signs.push(box);
  const middle = { x: box.x + box.width / 2, y: box.y + 12, 'text-anchor': 'middle' };
  if (box.isAway) add(svg, 'line', { x1: label.x, y1: label.y, x2: middle.x, y2: box.y + 8, stroke: kInk, 'stroke-width': 0.8 });
  if (label.kind === 'bookmark') {
    add(svg, 'rect', { x: box.x, y: box.y, width: box.width, height: box.height, rx: 3, fill: kInk });
    add(svg, 'text', { ...middle, class: 'flag' }, label.text);
  } else {
    add(svg, 'text', { ...middle, class: 'halo', style: 'fill:' + kSigns[label.kind].fill }, label.text);
  }
}

function drawSigns(svg, run, at) {
  const signs = signsOf(run, at);
  for (const sign of signs) hint(drawShape(svg, sign.kind, sign.x, sign.y), sign.hint);
  run.signs = new Set(signs.map((sign) => sign.kind));
  const boxes = signs.map(({ x, y }) => ({ x: x - 5, y: y - 5, width: 10, height: 10 }));
  const way = wayBoxes(run, at);
  for (const label of labels(signs)) drawLabel(svg, boxes, way, label);
}

// The room that the way itself takes.
function wayBoxes(run, at) {
  const step = 5;
  const boxes = [];
  for (const part of run.track) {
    for (let i = 1; i < part.t.length; ++i) {
      const [x, y, toX, toY] = [at.x(part.lon[i - 1]), at.y(part.lat[i - 1]), at.x(part.lon[i]), at.y(part.lat[i])];
      const count = Math.ceil(Math.hypot(toX - x, toY - y) / step);
      for (let j = 0; j < count; ++j)
        boxes.push({ x: x + (toX - x) * j / count - 2, y: y + (toY - y) * j / count - 2, width: 4, height: 4 });
    }
  }
  return boxes;
}

// What the signs and lines of the track mean.
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
