// Prepares the data of a run for drawing.

// The parts of a line. A null in the data separates two parts. A step line holds each value until the next
// one, and the last value until the end of the run.
function splitLine(line, endMs) {
  line.parts = [];
  line.isSteps = line.steps === true;
  let from = 0;
  for (let i = 0; i <= line.t.length; ++i) {
    if (i < line.t.length && line.t[i] !== null) continue;
    if (i > from) line.parts.push({ t: line.t.slice(from, i), min: line.min.slice(from, i), max: line.max.slice(from, i) });
    from = i + 1;
  }
  const last = line.parts[line.parts.length - 1];
  const goesOn = line.t.length > 0 && line.t[line.t.length - 1] !== null;
  if (!line.isSteps || !last || !goesOn || last.t[last.t.length - 1] >= endMs) return;
  last.t.push(endMs);
  last.min.push(last.min[last.min.length - 1]);
  last.max.push(last.max[last.max.length - 1]);
}

// The bars of a lane: each has a time range and a state.
function bars(lane, endMs) {
  return lane.t.map((from, i) => {
    const [text, level] = lane.state[i] < 0 ? ['on and off, ' + lane.share[i] + ' % on', lane.share[i] > 0 ? 2 : 0]
      : lane.states[lane.state[i]];
    return { from, to: i + 1 < lane.t.length ? lane.t[i + 1] : endMs, text, level, share: lane.share[i] / 100,
      isThinned: lane.state[i] < 0 };
  });
}

function prepareLane(run, lane) {
  lane.bars = bars(lane, run.endMs);
  lane.known = lane.bars.length > 0 ? lane.bars[0].from : Infinity;
  lane.colour = kLaneColours[lane.name];
  lane.summary = lane.times === 0 ? (lane.bars.some((bar) => bar.level === 1) ? 'present' : '\u2013')
    : lane.times + '\u00d7, ' + duration(lane.onMs);
}

// Gaps and losses as lanes.
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

function isCrash(event) {
  return event.source === 'crash' && event.text === 'detected';
}

function eventText(event) {
  return event.number ? 'bookmark ' + event.number : words(event.source) + ' ' + event.text;
}

function isEmpty(run) {
  return run.charts.length === 0 && run.events.length === 0 &&
      run.groups.every((group) => group.lanes.every((lane) => lane.bars.length === 0));
}

// Prepares each run once, when it is first shown.
function prepare(run) {
  if (run.isPrepared) return;
  run.isPrepared = true;
  for (const chart of run.charts) chart.lines.forEach((line) => splitLine(line, run.endMs));
  for (const group of run.groups) {
    for (const lane of group.lanes) prepareLane(run, lane);
    group.lanes.sort((a, b) => (b.name === 'recording') - (a.name === 'recording'));
  }
  const recording = run.groups.find((group) => group.name === 'Recorder').lanes[0];
  run.recording = recording.bars.filter((bar) => bar.level === 2);
  run.recordings = recording.times;
  run.recordedMs = recording.onMs;
  run.isEmpty = isEmpty(run);
  run.lostRecords = Math.max(run.lost, run.missing);
  run.groups.push(gapLanes(run));
  run.events.sort((a, b) => a.t - b.t);
  run.marks = run.events.filter((event) => event.number || isCrash(event));
}
