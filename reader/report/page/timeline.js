// The time line: all values and states over time on one axis, with buttons to zoom and move.

// The view of a run: its time range, width, cursor and followers.
function makeView(run) {
  return { ...wholeRun(run), width: 0, offset: 0, cursorMs: null, pointer: null, playing: null, followers: [], draw: () => {} };
}

function drawButtons(parent, run, view) {
  const bar = add(parent, 'div', { class: 'buttons screen', role: 'group', 'aria-label': 'Zoom' });
  const button = (text, label, action) => {
    const one = add(bar, 'button', { type: 'button', 'aria-label': label, title: label }, text);
    one.addEventListener('click', action);
    return one;
  };
  button('\u2212', 'Zoom out', () => scale(run, view, 2));
  button('+', 'Zoom in', () => scale(run, view, 0.5));
  view.earlier = button('\u25c2', 'Earlier', () => pan(run, view, -0.5));
  view.later = button('\u25b8', 'Later', () => pan(run, view, 0.5));
  view.whole = button('Whole run', 'Show the whole run', () => { view.pointer = null; zoomOut(run, view); });
}

function drawHints(parent, run) {
  const hints = add(parent, 'p', { class: 'hint' }, 'Shaded: recording. Dashed lines: bookmarks. Orange lines: crashes.');
  const how = matchMedia('(pointer: coarse)').matches ? ' Touch for values.' : ' Point for values, drag to zoom.';
  add(hints, 'span', { class: 'screen' }, how);
  const keys = add(parent, 'details', { class: 'keys screen' });
  add(keys, 'summary', {}, 'Keys');
  const list = add(keys, 'dl');
  for (const [key, action] of kKeys) tell(list, key, action);
}

// Tells the user that values are thinned here, and how to see more.
function fillThinned(note, run, view) {
  const widthMs = thinnedMs(run, view);
  note.hidden = widthMs < Math.max(pixelsMs(view, 2), 2);
  if (note.hidden) return;
  const range = run.utcMs === null ? '' : [['--from', view.from], ['--to', view.to]].map(([option, ms]) =>
    ' ' + option + ' ' + new Date(run.utcMs + ms).toISOString()).join('');
  note.textContent = 'Thinned: one point stands for up to ' + duration(widthMs) +
      ' and keeps the lowest and highest value. A page of this stretch alone shows more: ';
  add(note, 'code', {}, 'metadata report -o stretch.html' + range);
}

function fillPlot(run, view) {
  const { rows } = view;
  rows.textContent = '';
  view.width = measureWidth(rows);
  drawAxisRow(rows, run, view);
  drawFlagsRow(rows, run, view);
  for (const chart of run.charts) drawChart(rows, run, chart, view);
  add(rows, 'h2', { class: 'sheet' }, 'What was on, and when');
  for (const group of run.groups) drawGroup(rows, run, view, group);
  view.offset = rows.querySelector('.picture').getBoundingClientRect().left - view.plot.getBoundingClientRect().left;
}

function drawTimeLine(section, run, view) {
  add(section, 'h2', { class: 'sheet', id: 'values' }, 'Values over time');
  drawHints(section, run);
  drawButtons(section, run, view);
  const note = add(section, 'p', { class: 'thinned', hidden: '', role: 'status' });
  view.plot = add(section, 'div', { class: 'plot', tabindex: '0', role: 'group', 'aria-labelledby': 'values',
    'aria-describedby': 'readout' });
  view.rows = add(view.plot, 'div');
  view.drag = add(view.plot, 'div', { class: 'drag screen', hidden: '' });
  view.cursor = add(view.plot, 'div', { class: 'cursor screen', hidden: '' });
  view.draw = () => {
    fillPlot(run, view);
    fillThinned(note, run, view);
    view.whole.disabled = isWhole(run, view);
    view.earlier.disabled = view.from <= wholeRun(run).from;
    view.later.disabled = view.to >= wholeRun(run).to;
  };
  view.draw();
  followPointer(run, view);
  followKeys(run, view);
}

// Redraws when the width of the pictures changes.
function followWidth(run, view) {
  new ResizeObserver(() => {
    if (!view.plot.isConnected || measureWidth(view.rows) === view.width) return;
    view.draw();
    setCursor(run, view, view.cursorMs);
  }).observe(view.plot);
}
