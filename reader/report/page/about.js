// The summary of a run, in words.

function title(run) {
  const [unit, plate] = (run.facts.vehicle || '').split(', ');
  if (!unit && !plate) return 'Recorded drive';
  return 'Drive of ' + (unit || 'a vehicle') + (plate ? ', plate ' + plate : '');
}

function when(run) {
  const length = run.endMs > run.beginMs ? ' (' + duration(run.endMs - run.beginMs) + ')' : '';
  if (run.utcMs === null) return 'Time of day not known' + length;
  const [from, to] = [longDate(run, run.beginMs), longDate(run, run.endMs)];
  return from + ', ' + clockTime(run, run.beginMs, 0) + ' \u2013 ' + (from === to ? '' : to + ', ') + clockTime(run, run.endMs, 0) +
      ' UTC' + length;
}

function warnings(run) {
  const all = [];
  if (run.lost > 0) all.push(several(run.lost, 'record') + ' were lost, as the recording tells.');
  if (run.missing > run.lost) all.push(several(run.missing - run.lost, 'record') + ' are missing, and the recording does not tell why.');
  if (run.beginIsMissing) all.push('The begin of this run is in a file that was not given.');
  return all;
}

function drawHeader(parent, run) {
  const header = add(parent, 'header');
  add(header, 'h1', {}, title(run));
  add(header, 'p', { class: 'when' }, when(run));
  const device = run.facts['system info'] ? run.facts['system info'].replace(', ', ', software ') + ' \u00b7 ' : '';
  const files = run.files.map((file) => file.replace(/.*\//, ''));
  const named = files.length > 3 ? [files[0], '\u2026', files[files.length - 1]] : files;
  add(header, 'p', { class: 'soft' }, device + (run.isWhole ? 'run ' : 'part of run ') + run.run + ' \u00b7 ' + run.ended + ' \u00b7 ' + named.join(', '));
  for (const warning of warnings(run)) add(header, 'p', { class: 'warning' }, warning);
}

function highest(line) {
  return line.parts.reduce((most, part) => part.max.reduce((a, b) => Math.max(a, b), most), -Infinity);
}

// Driven distance: from the data, else the length of the track.
function drivenText(run) {
  if (run.track.length === 0) return ['\u2013', 'driven, by GPS'];
  const { metres, leaps, leapMetres } = run.driven || { metres: trackLength(run.track), leaps: 0, leapMetres: 0 };
  const without = leaps === 0 ? '' : ', without ' + several(leaps, 'leap') + ' of ' + distance(leapMetres);
  return [distance(metres), 'driven, by GPS' + without];
}

function drawTotals(parent, run) {
  const gaps = run.gaps.reduce((sum, source) => sum + source.count, 0);
  const speed = highest(lineOf(run, 'Speed', 'GPS'));
  const bookmarks = run.events.filter((event) => event.number).length;
  const totals = [
    [run.recordings === 0 ? 'none' : duration(run.recordedMs), 'recorded' + (run.recordings === 0 ? '' : ', in ' + several(run.recordings, 'recording'))],
    drivenText(run),
    [number(bookmarks), bookmarks === 1 ? 'bookmark' : 'bookmarks'],
    [speed === -Infinity ? '\u2013' : number(speed) + ' km/h', 'highest speed, by GPS'],
    [number(run.records), run.records === 1 ? 'record' : 'records'],
    [run.lostRecords === 0 ? 'none' : number(run.lostRecords), 'lost; ' + (gaps === 0 ? 'no gaps' : several(gaps, 'gap'))],
  ];
  const grid = add(parent, 'div', { class: 'totals' });
  for (const [value, what] of totals) {
    const cell = add(grid, 'div');
    add(cell, 'b', {}, value);
    add(cell, 'span', {}, what);
  }
}

const kFactNames = { 'system info': 'recorder', mac: 'hardware address', serial: 'serial number', 'store sqlite': 'SQLite',
  'store software': 'MetadataMgr', 'version 2': 'build' };

function drawFacts(parent, run) {
  const list = add(parent, 'dl');
  for (const [name, value] of Object.entries(run.facts)) {
    if (/^[, ]*$/.test(value)) continue;
    tell(list, kFactNames[name] || name, value);
  }
}
