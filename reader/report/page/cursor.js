// The cursor is the selected time, view.cursorMs; null if there is none. It shows as a line through the
// plots, a dot on the map and the readout. Each change calls the functions in view.followers.

// `at` is the point of the window for the readout; null puts the readout beside the cursor's line.
function setCursor(run, view, time, at = null) {
  const ms = time === null ? null : Math.round(time);  // record times are whole milliseconds
  view.cursorMs = ms;
  const isShown = ms !== null && ms >= view.from && ms <= view.to;
  view.cursor.hidden = !isShown;
  if (isShown) view.cursor.style.left = view.offset + timeToX(view, ms) + 'px';
  announce(at === null && !view.playing);
  if (ms === null || (at === null && !isOnScreen(view.plot))) hideReadout();
  else showReadout(run, view, ms, at || besideCursor(view));
  for (const follow of view.followers) follow(ms);
}

function isOnScreen(element) {
  const { top, bottom } = element.getBoundingClientRect();
  return top < innerHeight && bottom > 0;
}

function besideCursor(view) {
  const [line, plot] = [view.cursor.getBoundingClientRect(), view.plot.getBoundingClientRect()];
  return { x: line.left, y: Math.min(Math.max(plot.top + 60, 60), innerHeight - 60) };
}

// Shows another time range. The cursor stays under the pointer, or at its time if that is still visible.
function zoom(run, view, from, to) {
  const whole = wholeRun(run);
  const least = 50;
  const length = Math.min(Math.max(to - from, least), whole.to - whole.from);
  view.from = Math.min(Math.max(from, whole.from), whole.to - length);
  view.to = view.from + length;
  view.draw();
  if (view.pointer) setCursor(run, view, timeUnder(view, view.pointer), view.pointer);
  else if (view.cursorMs !== null) setCursor(run, view, view.cursorMs >= view.from && view.cursorMs <= view.to ? view.cursorMs : null);
}

// Stops the playing video. Called when the user moves the cursor.
function stopVideo(view) {
  const { playing } = view;
  if (!playing) return;
  view.playing = null;
  for (const video of [playing, ...playing.others]) video.element.pause();
}

function wholeRun(run) {
  return { from: run.beginMs, to: Math.max(run.endMs, run.beginMs + 1000) };
}

function zoomOut(run, view) {
  const { from, to } = wholeRun(run);
  zoom(run, view, from, to);
}

function isWhole(run, view) {
  const { from, to } = wholeRun(run);
  return view.from <= from && view.to >= to;
}

// Multiplies the length of the visible range by `factor`, around the cursor, else around the middle.
function scale(run, view, factor) {
  const fixed = view.cursorMs === null ? (view.from + view.to) / 2 : view.cursorMs;
  view.pointer = null;
  zoom(run, view, fixed - (fixed - view.from) * factor, fixed + (view.to - fixed) * factor);
}

// Moves the visible range by a share of its length.
function pan(run, view, share) {
  const by = (view.to - view.from) * share;
  view.pointer = null;
  zoom(run, view, view.from + by, view.to + by);
}

// Moves the cursor to a time of the run, and the visible range if the cursor would be outside.
function goTo(run, view, ms) {
  const { from, to } = wholeRun(run);
  const at = Math.min(Math.max(ms, from), to);
  const length = view.to - view.from;
  view.pointer = null;
  view.cursorMs = at;
  if (at < view.from || at > view.to) zoom(run, view, at - length / 2, at + length / 2);
  else setCursor(run, view, at);
}

// The time at a point of the window; outside the plots, the nearest visible time.
function timeUnder(view, { x }) {
  const ms = xToTime(view, x - view.plot.getBoundingClientRect().left - view.offset);
  return Math.min(Math.max(ms, view.from), view.to);
}
