// The keys of the time line.

const kKeys = [
  ['\u2190 \u2192', 'one step'], ['Shift \u2190 \u2192', 'ten steps'], ['Home End', 'first and last time shown'],
  ['+ \u2212', 'zoom'], ['0', 'whole run'], ['Page Up, Page Down', 'bookmark or crash before, after'], ['Esc', 'no cursor'],
];

function nextMark(run, ms, direction) {
  const times = run.marks.map((mark) => mark.t).filter((t) => (direction > 0 ? t > ms : t < ms));
  if (times.length === 0) return ms;
  return direction > 0 ? Math.min(...times) : Math.max(...times);
}

function keyActions(run, view) {
  const now = () => (view.cursorMs === null ? (view.from + view.to) / 2 : view.cursorMs);
  const step = (event) => (view.to - view.from) / (event.shiftKey ? 10 : 100);
  return {
    ArrowLeft: (event) => goTo(run, view, now() - step(event)),
    ArrowRight: (event) => goTo(run, view, now() + step(event)),
    Home: () => goTo(run, view, view.from),
    End: () => goTo(run, view, view.to),
    PageUp: () => goTo(run, view, nextMark(run, now(), -1)),
    PageDown: () => goTo(run, view, nextMark(run, now(), 1)),
    '+': () => scale(run, view, 0.5),
    '=': () => scale(run, view, 0.5),
    '-': () => scale(run, view, 2),
    0: () => zoomOut(run, view),
    Escape: () => leave(run, view),
  };
}

function followKeys(run, view) {
  const actions = keyActions(run, view);
  view.plot.addEventListener('keydown', (event) => {
    const action = actions[event.key];
    if (!action || event.ctrlKey || event.altKey || event.metaKey) return;
    event.preventDefault();
    stopVideo(view);
    action(event);
  });
}
