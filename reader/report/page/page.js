// Puts the page together.

function drawTop(section, run, view) {
  const top = add(section, 'div', { class: 'top' });
  const left = add(top, 'div');
  const panel = add(left, 'div', { class: 'panel' });
  if (run.track.length > 0) {
    addMap(panel, run, view);
    drawTrackLegend(left, run);
  } else {
    add(panel, 'div', { class: 'nothing' }, 'No position was recorded.');
  }
  const right = add(top, 'div');
  drawTotals(right, run);
  drawFacts(run.track.length > 0 ? right : left, run);
}

function drawRun(parent, run) {
  prepare(run);
  hideReadout();
  parent.textContent = '';
  const section = add(parent, 'section', { class: 'run' });
  drawHeader(section, run);
  if (run.isEmpty) {
    add(section, 'div', { class: 'nothing panel' }, 'Nothing but its start was recorded in this run.');
    drawFacts(section, run);
  } else {
    const view = makeView(run);
    drawTop(section, run, view);
    drawVideos(section, run, view);
    drawTimeLine(section, run, view);
    followWidth(run, view);
  }
  drawTables(section, run);
  document.title = title(run) + ' \u2013 ' + when(run);
}

function drawPage(parent, runs) {
  if (runs.length === 0) {
    add(parent, 'p', { class: 'nothing' }, 'There is no recording.');
    return;
  }
  const markChosen = runs.length > 1 ? drawRunList(parent, runs) : () => {};
  const chosen = add(parent, 'div');
  const show = () => {
    const i = runOfAddress(runs);
    drawRun(chosen, runs[i]);
    markChosen(i);
  };
  addEventListener('hashchange', show);
  show();
}

drawPage(document.getElementById('runs'), JSON.parse(document.getElementById('data').textContent));
