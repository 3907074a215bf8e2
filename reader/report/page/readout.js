// The values at the cursor, in words, beside the pointer or at the bottom of a small screen.

function tell(list, name, text) {
  if (text === '') return;
  add(list, 'dt', {}, name);
  add(list, 'dd', {}, text);
}

function fillReadout(readout, run, view, ms) {
  const nearMs = pixelsMs(view, 5);
  readout.textContent = '';
  add(readout, 'b', {}, run.utcMs === null ? clockTime(run, ms) : clockTime(run, ms) + ' UTC');
  const list = add(readout, 'dl');
  tell(list, 'tick', String(Math.round(run.firstTick + ms)));
  tell(list, 'Position', positionText(run, ms));
  for (const chart of run.charts) tell(list, chart.name, chartText(chart, ms, nearMs));
  for (const group of run.groups) tell(list, group.name, groupText(group, ms));
  for (const event of run.events.filter((one) => Math.abs(one.t - ms) <= nearMs).slice(0, 5))
    add(readout, 'p', {}, clockTime(run, event.t) + ' ' + eventText(event));
}

// Places the readout beside a point, inside the window.
function placeReadout(readout, { x, y }) {
  const isRight = x + 16 + readout.offsetWidth > innerWidth;
  readout.style.left = Math.max(4, x + (isRight ? -16 - readout.offsetWidth : 16)) + 'px';
  readout.style.top = Math.max(4, Math.min(y + 12, innerHeight - readout.offsetHeight - 6)) + 'px';
}

function showReadout(run, view, ms, at) {
  const readout = document.getElementById('readout');
  fillReadout(readout, run, view, ms);
  readout.hidden = false;
  placeReadout(readout, at);
}

// A screen reader speaks the readout when keys move the cursor, but not when a pointer or a video moves it.
function announce(isByKeys) {
  document.getElementById('readout').setAttribute('aria-live', isByKeys ? 'polite' : 'off');
}

function hideReadout() {
  document.getElementById('readout').hidden = true;
}
