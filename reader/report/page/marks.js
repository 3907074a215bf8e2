// Bookmarks, crashes and recordings, shown in every plot.

// Shades the times during which video was recorded.
function drawRecording(svg, run, view, top, bottom) {
  for (const bar of run.recording) {
    const place = span(view, bar.from, bar.to, 0);
    if (place) add(svg, 'rect', { ...place, y: top, height: bottom - top, fill: kRecording, opacity: 0.09 * bar.share });
  }
}

function isInView(view, mark) {
  return mark.t >= view.from && mark.t <= view.to;
}

// Draws a line through a plot for each bookmark and crash.
function drawMarks(svg, run, view, top, bottom) {
  const marks = run.marks.filter((mark) => isInView(view, mark));
  for (const mark of marks) {
    const x = timeToX(view, mark.t);
    const style = mark.number ? { stroke: kInk, 'stroke-dasharray': '3 3', opacity: marks.length > 60 ? 0.3 : 0.7 }
      : { stroke: kCrash, 'stroke-width': 1.5 };
    add(svg, 'line', { x1: x, x2: x, y1: top, y2: bottom, ...style });
  }
}

// Marks whose flags would overlap share one flag.
function flags(run, view) {
  const all = [];
  for (const mark of run.marks) {
    if (!isInView(view, mark)) continue;
    const x = timeToX(view, mark.t);
    const last = all[all.length - 1];
    if (last && !last.number === !mark.number && x - last.end < 4) {
      last.text = last.number ? last.number + '\u2013' + mark.number : '\u2715';
    } else {
      all.push({ x, t: mark.t, number: mark.number, text: mark.number ? String(mark.number) : '\u2715' });
    }
    const flag = all[all.length - 1];
    flag.width = 9 + 6.5 * flag.text.length;
    flag.end = flag.x + flag.width;
  }
  return all;
}

function drawFlags(svg, run, view, y) {
  for (const flag of flags(run, view)) {
    const x = Math.min(Math.max(flag.x - flag.width / 2, 0), view.width - flag.width);
    const box = add(svg, 'rect', { x, y, width: flag.width, height: 16, rx: 3, fill: flag.number ? kInk : kCrash });
    hint(box, (flag.number ? 'bookmark ' + flag.text : 'crash') + ' at ' + clockTime(run, flag.t));
    add(svg, 'text', { x: x + flag.width / 2, y: y + 12, 'text-anchor': 'middle', class: 'flag' }, flag.text);
  }
}
