// The labels of the map, placed so that they cover neither signs nor each other.

// Bookmarks that are closer together than the height of a label share one label.
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

// A free box beside a point; null if there is none.
function freeBox(at, boxes, { x, y }, width, height) {
  for (const away of [8, 22, 38]) {
    for (const [dx, dy] of kPlaces) {
      const box = { width, height, x: x + dx * away + (dx - 1) * width / 2, y: y + dy * away + (dy - 1) * height / 2 };
      const isInside = box.x >= 4 && box.x + width <= at.width - 40 && box.y >= 20 && box.y + height <= at.height - 28;
      if (isInside && !overlaps(boxes, box)) return { ...box, isAway: away > 8 };
    }
  }
  return null;
}

function drawLabel(svg, at, signs, way, label) {
  const [width, height] = [8 + 6.7 * label.text.length, 16];
  const box = freeBox(at, signs.concat(way), label, width, height) || freeBox(at, signs, label, width, height);
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
  for (const label of labels(signs)) drawLabel(svg, at, boxes, way, label);
}

// Boxes along the track, which labels avoid.
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
