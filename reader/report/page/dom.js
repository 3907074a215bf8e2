// Makes elements of HTML and SVG.

// Appends an element: of HTML, or of SVG if the parent is. `text` is never read as markup.
function add(parent, name, attributes = {}, text = undefined) {
  const isSvg = name === 'svg' || parent.namespaceURI.endsWith('svg');
  const element = isSvg ? document.createElementNS('http://www.w3.org/2000/svg', name) : document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
  if (text !== undefined) element.textContent = text;
  parent.appendChild(element);
  return element;
}

function hint(element, text) {
  add(element, 'title', {}, text);
  return element;
}

function figure(parent, width, height, label) {
  return add(parent, 'svg', { viewBox: `0 0 ${width} ${height}`, class: 'figure', role: 'img', 'aria-label': label });
}
