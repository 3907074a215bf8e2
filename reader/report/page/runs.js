// The list of runs. The page shows the run that its address names (#run-3), so the browser can go back.

function runOfAddress(runs) {
  const found = /^#run-(\d+)$/.exec(location.hash);
  return found ? Math.min(Math.max(Number(found[1]) - 1, 0), runs.length - 1) : 0;
}

function countsText(run) {
  const bookmarks = run.events.filter((event) => event.number).length;
  const crashes = run.events.filter(isCrash).length;
  const counts = [[bookmarks, 'bookmark', 'bookmarks'], [crashes, 'crash', 'crashes']];
  return counts.filter(([count]) => count > 0).map(([count, one, many]) => several(count, one, many)).join(', ');
}

function listRun(list, run, i) {
  const item = add(list, 'li');
  const link = add(item, 'a', { href: '#run-' + (i + 1) });
  add(link, 'b', {}, when(run));
  const about = [title(run), run.ended, countsText(run)].filter((text) => text !== '');
  add(link, 'span', {}, about.join(' \u00b7 '));
  return link;
}

// Draws the list, with links to the previous and the next run. Returns a function that marks the shown run.
function drawRunList(parent, runs) {
  const nav = add(parent, 'nav', { class: 'screen', 'aria-labelledby': 'run-list' });
  const head = add(nav, 'div', { class: 'head' });
  add(head, 'h2', { id: 'run-list' }, several(runs.length, 'run'));
  const place = add(head, 'span', { class: 'soft' });
  const before = add(head, 'a', { class: 'step' }, '\u25c2 Previous');
  const after = add(head, 'a', { class: 'step' }, 'Next \u25b8');
  const list = add(nav, 'ol');
  const links = runs.map((run, i) => listRun(list, run, i));
  return (chosen) => {
    links.forEach((link, i) => (i === chosen ? link.setAttribute('aria-current', 'true') : link.removeAttribute('aria-current')));
    const item = links[chosen].parentNode;
    list.scrollTop = item.offsetTop - list.offsetTop - (list.clientHeight - item.offsetHeight) / 2;
    place.textContent = 'showing ' + (chosen + 1) + ' of ' + runs.length;
    for (const [link, i] of [[before, chosen - 1], [after, chosen + 1]]) {
      if (i >= 0 && i < runs.length) link.setAttribute('href', '#run-' + (i + 1)); else link.removeAttribute('href');
    }
  };
}
