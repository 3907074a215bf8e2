// The values at a time, as text.

function lineName(line) {
  return line.name.replace('temperature', 'sensor');
}

// The line of a chart, by name; an empty line if the chart or the line is missing.
function lineOf(run, chart, name) {
  const found = run.charts.find((one) => one.name === chart);
  return (found && found.lines.find((line) => line.name === name)) || { parts: [] };
}

// The value of a line at a time; null if unknown. The ends of a part also count up to nearMs outside it.
function valueAt(line, ms, nearMs) {
  for (const part of line.parts) {
    if (ms < part.t[0] - nearMs || ms > part.t[part.t.length - 1] + nearMs) continue;
    const i = Math.max(lastNotAbove(part.t, ms), 0);
    return part.min[i] === part.max[i] ? number(part.min[i]) : number(part.min[i]) + ' to ' + number(part.max[i]);
  }
  return null;
}

// The state of a lane at a time; null if unknown.
function barAt(lane, ms) {
  const bar = lane.bars[lastNotAbove(lane.bars.map((one) => one.from), ms)];
  return bar && ms <= bar.to ? bar : null;
}

// "GPS 39.6, radar 36 km/h"; empty if nothing is known.
function chartText(chart, ms, nearMs) {
  const values = chart.lines.map((line) => [lineName(line), valueAt(line, ms, nearMs)])
      .filter((named) => named[1] !== null).map(([name, value]) => (chart.lines.length > 1 ? name + ' ' : '') + value);
  return values.length === 0 ? '' : values.join(', ') + (chart.unit === 'in use' ? '' : ' ' + chart.unit);
}

// What is on: "brakes, lights", "camera 2 state 1".
function groupText(group, ms) {
  const plain = /^(on|open|active|started|entered|detected|fix|reading)$/;
  const on = group.lanes.map((lane) => [lane, barAt(lane, ms)]).filter(([, bar]) => bar && bar.level === 2);
  return on.map(([lane, bar]) => words(lane.name) + (plain.test(bar.text) ? '' : ' ' + bar.text)).join(', ');
}

function positionText(run, ms) {
  if (run.track.length === 0) return '';
  const place = placeAt(run, ms);
  return place.isKnown ? placeText(place) : 'not known';
}

// The longest time range that one point, or one visible bar, stands for; 0 if nothing is thinned.
function thinnedMs(run, view) {
  const lines = run.charts.flatMap((chart) => chart.lines).map((line) => line.widthMs).filter((width) => width > 1);
  const bars = run.groups.flatMap((group) => group.lanes).flatMap((lane) => lane.bars)
      .filter((bar) => bar.isThinned && bar.to > view.from && bar.from < view.to).map((bar) => bar.to - bar.from);
  return lines.concat(bars).reduce((most, width) => Math.max(most, width), 0);
}
