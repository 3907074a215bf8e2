// Puts the page together.

function drawTop(section, run, view) {
  const top = add(section, 'div', { class: 'top' });
  const left = add(top, 'div');
  const panel = add(left, 'div', { class: 'panel' });
  if (run.track.length > 0) {
    followTrack(drawTrack(panel, run), run, view);
    drawTrackLegend(left, run);
  } else {
    add(panel, 'div', { class: 'nothing' }, 'No position was recorded.');
  }
  const right = add(top, 'div');
  drawTotals(right, run);
  drawFacts(run.track.length > 0 ? right : left, run);
}

function drawPlots(plot, run, view) {
  plot.textContent = '';
  drawCharts(plot, run, view);
  add(plot, 'h2', { class: 'sheet' }, 'What was on, and when');
  drawGroups(plot, run, view);
  plot.appendChild(run.cursor);
}

function drawOverTime(section, run, view) {
  add(section, 'h2', { class: 'sheet' }, 'Values over time');
  const hints = add(section, 'p', { class: 'hint' }, 'Shaded: recording. Dashed lines: bookmarks. Orange lines: crashes.');
  add(hints, 'span', { class: 'screen' }, ' Point for values, drag to zoom.');
  const whole = add(hints, 'button', { class: 'screen', hidden: '' }, 'show all');
  const plot = add(section, 'div', { class: 'plot' });
  const zoom = (from, to) => {
    view.from = from === null ? run.beginMs : from;
    view.to = to === null ? Math.max(run.endMs, run.beginMs + 1000) : to;
    whole.hidden = from === null;
    drawPlots(plot, run, view);
  };
  zoom(null, null);
  whole.addEventListener('click', () => zoom(null, null));
  followPlot(plot, run, view, zoom);
}

function drawRun(parent, run, i) {
  const section = add(parent, 'section', { class: 'run', id: 'run-' + i });
  const view = {};
  run.cursor = add(section, 'div', { class: 'cursor screen', hidden: '' });
  drawHeader(section, run);
  if (run.isEmpty) {
    add(section, 'div', { class: 'nothing panel' }, 'Nothing but its start was recorded in this run.');
    drawFacts(section, run);
  } else {
    drawTop(section, run, view);
    drawOverTime(section, run, view);
  }
  drawTables(section, run);
}

function drawPage(parent, runs) {
  if (runs.length === 0) add(parent, 'p', { class: 'nothing' }, 'There is no recording.');
  runs.forEach(prepare);
  if (runs.length > 1) drawContents(parent, runs);
  runs.forEach((run, i) => drawRun(parent, run, i));
  if (runs.length > 0)
    document.title = runs.length > 1 ? several(runs.length, 'run') : title(runs[0]) + ' \u2013 ' + when(runs[0]);
}

drawPage(document.getElementById('runs'), JSON.parse(document.getElementById('data').textContent));
