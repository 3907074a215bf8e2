// The rows of the time line: a name, a picture on the common time axis, a note. page.css puts them side by side,
// or name and note above the picture where the page is narrow.

function addRow(parent, name, note = '') {
  const row = add(parent, 'div', { class: 'row' });
  add(row, 'div', { class: 'name' }, name);
  const cell = add(row, 'div', { class: 'picture' });
  add(row, 'div', { class: 'note' }, note);
  return { row, cell, name: row.firstChild, note: row.lastChild };
}

// The width of a row's picture in pixels.
function measureWidth(parent) {
  const { row, cell } = addRow(parent, '');
  const width = cell.clientWidth;
  row.remove();
  return Math.max(width, 160);
}

// Draws the picture of a row, with the parts that all rows share: recordings, grid, bookmarks and crashes.
function drawPicture(cell, run, view, height, label) {
  const svg = figure(cell, view.width, height, label);
  drawRecording(svg, run, view, 0, height);
  drawGrid(svg, run, view, 0, height);
  drawMarks(svg, run, view, 0, height);
  return svg;
}

// The row with the time axis.
function drawAxisRow(parent, run, view) {
  const { row, cell } = addRow(parent, axisName(run, view));
  row.classList.add('axis');
  drawTimeAxis(figure(cell, view.width, 24, 'time axis'), run, view, 22);
}

function drawFlagsRow(parent, run, view) {
  if (run.marks.length === 0) return;
  const { row, cell } = addRow(parent, 'Bookmarks, crashes');
  row.classList.add('lane');
  drawFlags(drawPicture(cell, run, view, 22, 'bookmarks and crashes'), run, view, 3);
}
