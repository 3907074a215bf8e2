// The tables below the pictures.

// Each cell has the name of its column, which small.css shows where the page is too narrow for columns. A
// long table can be folded; on paper it is unfolded.
function drawTable(parent, heading, columns, rows, { more = '', isFolded = false } = {}) {
  const block = isFolded ? add(parent, 'details', { class: 'table' }) : parent;
  add(isFolded ? add(block, 'summary') : block, 'h2', {}, heading);
  const table = add(block, 'table', { role: 'table' });
  const head = add(add(table, 'thead', { role: 'rowgroup' }), 'tr', { role: 'row' });
  for (const [name, style] of columns) add(head, 'th', { class: style, role: 'columnheader' }, name);
  const body = add(table, 'tbody', { role: 'rowgroup' });
  for (const row of rows) {
    const line = add(body, 'tr', { role: 'row' });
    row.forEach((cell, i) => add(line, 'td', { class: columns[i][1], role: 'cell', 'data-name': columns[i][0] }, cell));
  }
  if (more !== '') add(block, 'p', { class: 'hint' }, more);
}

function drawEvents(parent, run) {
  const most = 500;
  const rows = run.events.slice(0, most).map((event) => {
    const time = event.utcMs === null ? clockTime(run, event.t) : tableTime(new Date(event.utcMs).toISOString());
    return [time, eventText(event), event.place ? event.place.kmh.toFixed(1) : '',
      event.place ? placeText(event.place) : ''];
  });
  const more = run.events.length - rows.length + run.moreEvents;
  drawTable(parent, 'Events', [[run.utcMs === null ? 'time' : 'time (UTC)', 'time'], ['event', ''], ['km/h', 'number'], ['position', 'time']],
      rows, { more: more > 0 ? 'and ' + several(more, 'more event') : '' });
}

function drawGapTable(parent, run) {
  const most = 20;
  const gaps = run.gaps.flatMap((source) => source.gaps.map(([from, length]) => ({ source, from, length })));
  const count = run.gaps.reduce((sum, source) => sum + source.count, 0);
  const rows = gaps.sort((a, b) => b.length - a.length).slice(0, most).sort((a, b) => a.from - b.from).map(
      ({ source, from, length }) => [words(source.source), clockTime(run, from), duration(length), duration(source.usualMs)]);
  if (rows.length === 0) return;
  drawTable(parent, count > most ? 'The ' + most + ' longest of ' + number(count) + ' gaps' : 'Gaps',
      [['source', ''], ['from', 'time'], ['length', 'number'], ['usual distance', 'number']], rows);
}

function drawLossTable(parent, run) {
  const most = 50;
  const rows = run.losses.map(([table, count, from, to]) => [number(count) + ' of ' + table.replace(/_/g, ' '), from, to])
      .concat(run.holes.map(([count, from, to]) => [number(count) + ' by the sequence numbers', from, to]))
      .sort((a, b) => a[1] - b[1]).map(([what, from, to]) => [what, clockTime(run, from), clockTime(run, to)]);
  if (rows.length === 0) return;
  drawTable(parent, 'Lost records', [['records', ''], ['from', 'time'], ['to', 'time']], rows.slice(0, most),
      { more: rows.length > most ? 'and ' + several(rows.length - most, 'more loss', 'more losses') : '' });
}

function drawSources(parent, run) {
  drawTable(parent, (run.isWhole ? 'Sources' : 'Sources of the whole run') + ' (' + number(run.sources.length) + ')',
      [['source', ''], ['table', ''], ['records', 'number'], ['first (UTC)', 'time'], ['last (UTC)', 'time']],
      run.sources.map((source) => [words(source.source), source.table.replace(/_/g, ' '), number(source.records),
        tableTime(source.first), tableTime(source.last)]),
      { isFolded: true, more: run.moreSources > 0 ? 'and ' + several(run.moreSources, 'more source') : '' });
}

function drawTables(parent, run) {
  if (run.events.length > 0) drawEvents(parent, run);
  drawGapTable(parent, run);
  drawLossTable(parent, run);
  if (run.sources.length > 0) drawSources(parent, run);
}

addEventListener('beforeprint', () => {
  for (const table of document.querySelectorAll('details.table')) table.open = true;
});
