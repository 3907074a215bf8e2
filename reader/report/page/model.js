// Makes what is drawn of what is in the data.

// The lines between the breaks, which are null in the data.
function splitLine(line) {
  line.parts = [];
  let from = 0;
  for (let i = 0; i <= line.t.length; ++i) {
    if (i < line.t.length && line.t[i] !== null) continue;
    if (i > from) line.parts.push({ t: line.t.slice(from, i), min: line.min.slice(from, i), max: line.max.slice(from, i) });
    from = i + 1;
  }
}

// From when to when which state was in force.
function bars(lane, endMs) {
  return lane.t.map((from, i) => {
    const [text, level] = lane.state[i] < 0 ? ['on and off, ' + lane.share[i] + ' % on', lane.share[i] > 0 ? 2 : 0]
      : lane.states[lane.state[i]];
    return { from, to: i + 1 < lane.t.length ? lane.t[i + 1] : endMs, text, level, share: lane.share[i] / 100 };
  });
}

// Gaps and losses in the form of states.
function gapLanes(run) {
  const lanes = run.gaps.map((source) => ({
    name: source.source,
    bars: source.gaps.map(([from, length]) => ({ from, to: from + length, level: 2, share: 1,
      text: 'no record for ' + duration(length) + ', usual are ' + duration(source.usualMs) })),
    summary: source.count === 0 ? 'no gaps' : several(source.count, 'gap') + ', ' + duration(source.totalMs),
  }));
  const lost = run.losses.map(([table, count, from, to]) => ({ from, to, level: 2, share: 1,
    text: several(count, 'record') + ' of ' + table + ' lost' }));
  const holes = run.holes.map(([count, from, to]) => ({ from, to, level: 2, share: 1,
    text: several(count, 'record') + ' missing' }));
  lanes.push({ name: 'lost records', colour: kLoss, bars: lost.concat(holes).sort((a, b) => a.from - b.from),
    summary: run.lostRecords === 0 ? 'none' : several(run.lostRecords, 'record') });
  for (const lane of lanes) lane.known = run.beginMs;
  return { name: 'Gaps and losses', lanes };
}

function eventText(event) {
  return event.number ? 'bookmark ' + event.number : words(event.source) + ' ' + event.text;
}

function prepare(run) {
  for (const chart of run.charts) chart.lines.forEach(splitLine);
  for (const group of run.groups) {
    for (const lane of group.lanes) {
      lane.bars = bars(lane, run.endMs);
      lane.known = lane.bars.length > 0 ? lane.bars[0].from : Infinity;
      lane.colour = kLaneColours[lane.name];
      lane.summary = lane.times === 0 ? (lane.bars.some((bar) => bar.level === 1) ? 'present' : '\u2013')
        : lane.times + '\u00d7, ' + duration(lane.onMs);
    }
    group.lanes.sort((a, b) => (b.name === 'recording') - (a.name === 'recording'));
  }
  const recorder = run.groups.find((group) => group.name === 'Recorder');
  run.recording = recorder.lanes[0].bars.filter((bar) => bar.level === 2);
  run.recordings = recorder.lanes[0].times;
  run.recordedMs = recorder.lanes[0].onMs;
  run.isEmpty = run.charts.length === 0 && run.events.length === 0 &&
      run.groups.every((group) => group.lanes.every((lane) => lane.bars.length === 0));
  run.lostRecords = Math.max(run.lost, run.missing);
  run.groups.push(gapLanes(run));
  run.events.sort((a, b) => a.t - b.t);
  run.marks = run.events.filter((event) => event.number || isCrash(event));
}

function isCrash(event) {
  return event.source === 'crash' && event.text === 'detected';
}

// The values of a line of a chart; none where it has no such line.
function lineOf(run, chart, name) {
  const found = run.charts.find((one) => one.name === chart);
  return (found && found.lines.find((line) => line.name === name)) || { parts: [] };
}

// What a line is at a time; null where it is not known. Values that are near count: `nearMs`.
function valueAt(line, ms, nearMs) {
  for (const part of line.parts) {
    if (ms < part.t[0] - nearMs || ms > part.t[part.t.length - 1] + nearMs) continue;
    const i = Math.max(lastNotAbove(part.t, ms), 0);
    return part.min[i] === part.max[i] ? number(part.min[i]) : number(part.min[i]) + ' to ' + number(part.max[i]);
  }
  return null;
}

// The state of a lane at a time; null where none is known.
function barAt(lane, ms) {
  const bar = lane.bars[lastNotAbove(lane.bars.map((one) => one.from), ms)];
  return bar && ms <= bar.to ? bar : null;
}
