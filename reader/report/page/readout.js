// Values under the pointer, and zooming.

// "GPS 39.6, radar 36 km/h"; empty where nothing is known.
function chartText(chart, ms, nearMs) {
  const values = chart.lines.map((line) => [line.name.replace('temperature', 'sensor'), valueAt(line, ms, nearMs)])
      .filter((named) => named[1] !== null).map(([name, value]) => (chart.lines.length > 1 ? name + ' ' : '') + value);
  return values.length === 0 ? '' : values.join(', ') + (chart.unit === 'in use' ? '' : ' ' + chart.unit);
}

// What is on: "brakes, lights", "camera 2 state 1".
function groupText(group, ms) {
  const plain = /^(on|open|active|started|entered|detected|fix|reading)$/;
  const on = group.lanes.map((lane) => [lane, barAt(lane, ms)]).filter(([, bar]) => bar && bar.level === 2);
  return on.map(([lane, bar]) => words(lane.name) + (plain.test(bar.text) ? '' : ' ' + bar.text)).join(', ');
}

function fillReadout(readout, run, ms, nearMs) {
  readout.textContent = '';
  add(readout, 'b', {}, run.utcMs === null ? clockTime(run, ms) : clockTime(run, ms) + ' UTC');
  const list = add(readout, 'dl');
  const tell = (name, text) => {
    if (text === '') return;
    add(list, 'dt', {}, name);
    add(list, 'dd', {}, text);
  };
  tell('tick', String(Math.round(run.firstTick + ms)));
  for (const chart of run.charts) tell(chart.name, chartText(chart, ms, nearMs));
  for (const group of run.groups) tell(group.name, groupText(group, ms));
  for (const event of run.events.filter((one) => Math.abs(one.t - ms) <= nearMs).slice(0, 5))
    add(readout, 'p', {}, clockTime(run, event.t) + ' ' + eventText(event));
}

function hideReadout(run) {
  document.getElementById('readout').hidden = true;
  run.cursor.hidden = true;
  if (run.showPlace) run.showPlace(null);
}

// All that is known of a moment, beside the pointer; and where in plot and track it is.
function showReadout(run, view, ms, event) {
  const readout = document.getElementById('readout');
  fillReadout(readout, run, ms, 5 / kPlot.inner * (view.to - view.from));
  readout.hidden = false;
  const isRight = event.clientX + 16 + readout.offsetWidth > innerWidth;
  readout.style.left = Math.max(4, event.clientX + (isRight ? -16 - readout.offsetWidth : 16)) + 'px';
  readout.style.top = Math.max(4, Math.min(event.clientY + 12, innerHeight - readout.offsetHeight - 6)) + 'px';
  run.cursor.hidden = ms < view.from || ms > view.to;
  run.cursor.style.left = timeToX(view, ms) / kPlot.width * 100 + '%';
  if (run.showPlace) run.showPlace(ms);
}

function followPlot(plot, run, view, zoom) {
  let dragFrom = null;
  const timeAt = (event) => {
    const box = plot.getBoundingClientRect();
    return xToTime(view, (event.clientX - box.left) * kPlot.width / box.width);
  };
  plot.addEventListener('pointermove', (event) => {
    const ms = timeAt(event);
    if (ms < view.from || ms > view.to) hideReadout(run); else showReadout(run, view, ms, event);
  });
  plot.addEventListener('pointerleave', () => hideReadout(run));
  plot.addEventListener('pointerdown', (event) => { dragFrom = timeAt(event); });
  plot.addEventListener('pointerup', (event) => {
    const [from, to] = [dragFrom, timeAt(event)].sort((a, b) => a - b);
    if (dragFrom !== null && to - from > (view.to - view.from) / 80) zoom(Math.max(from, view.from), Math.min(to, view.to));
    dragFrom = null;
  });
  plot.addEventListener('dblclick', () => zoom(null, null));
}

function followTrack(svg, run, view) {
  svg.addEventListener('pointermove', (event) => {
    const box = svg.getBoundingClientRect();
    const scale = kTrack.width / box.width;
    const ms = run.whenAt((event.clientX - box.left) * scale, (event.clientY - box.top) * scale);
    if (ms === null) hideReadout(run); else showReadout(run, view, ms, event);
  });
  svg.addEventListener('pointerleave', () => hideReadout(run));
}
