// Moves the cursor with mouse, pen or finger, and zooms by dragging with the mouse.

function pointOf(event) {
  return { x: event.clientX, y: event.clientY };
}

// Whether a point is outside the plots, over their names or notes.
function isBeside(view, { x }) {
  const at = x - view.plot.getBoundingClientRect().left - view.offset;
  return at < kPlot.left - 8 || at > plotEnd(view) + 8;
}

function leave(run, view) {
  if (view.playing) return;
  view.pointer = null;
  setCursor(run, view, null);
}

function markDrag(view, fromMs, toMs) {
  const [a, b] = [timeToX(view, fromMs), timeToX(view, toMs)].sort((one, other) => one - other);
  view.drag.hidden = b - a < 5;
  view.drag.style.left = view.offset + a + 'px';
  view.drag.style.width = b - a + 'px';
}

function followPointer(run, view) {
  let dragFrom = null;
  const move = (event) => {
    if (view.playing) return;  // the video moves the cursor
    const at = pointOf(event);
    if (dragFrom === null && isBeside(view, at)) return leave(run, view);
    view.pointer = at;
    setCursor(run, view, timeUnder(view, at), at);
    if (dragFrom !== null) markDrag(view, dragFrom, view.cursorMs);
  };
  const drop = (event) => {
    if (dragFrom === null) return;
    const [from, to] = [dragFrom, timeUnder(view, pointOf(event))].sort((a, b) => a - b);
    dragFrom = null;
    view.drag.hidden = true;
    if (to - from > pixelsMs(view, 8)) zoom(run, view, from, to);
  };
  view.plot.addEventListener('pointermove', move);
  view.plot.addEventListener('pointerdown', (event) => {
    stopVideo(view);
    if (event.pointerType === 'mouse' && event.button === 0 && !isBeside(view, pointOf(event))) {
      dragFrom = timeUnder(view, pointOf(event));
      view.plot.setPointerCapture(event.pointerId);
    }
    move(event);
  });
  view.plot.addEventListener('pointerup', drop);
  view.plot.addEventListener('pointercancel', () => { dragFrom = null; view.drag.hidden = true; });
  view.plot.addEventListener('pointerleave', (event) => { if (event.pointerType === 'mouse') leave(run, view); });
  view.plot.addEventListener('dblclick', () => zoomOut(run, view));
}

// On the map, the pointer moves the cursor to the time when the vehicle was nearest.
function followMap(svg, run, view, at) {
  const move = (event) => {
    if (view.playing) return;
    const box = svg.getBoundingClientRect();
    const scale = at.width / box.width;
    const ms = whenNear(run, at, { x: (event.clientX - box.left) * scale, y: (event.clientY - box.top) * scale });
    view.pointer = null;
    setCursor(run, view, ms, pointOf(event));
  };
  svg.addEventListener('pointermove', move);
  svg.addEventListener('pointerdown', (event) => { stopVideo(view); move(event); });
  svg.addEventListener('pointerleave', (event) => { if (event.pointerType === 'mouse') leave(run, view); });
}
