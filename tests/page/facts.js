// What a page shows, as checks.py asks for it.

function channels(colour) {
  const found = colour.match(/[\d.]+/g).map(Number);
  return found.length === 3 ? found.concat(1) : found;
}

function luminance(colour) {
  const [r, g, b] = channels(colour).slice(0, 3).map((value) => {
    const share = value / 255;
    return share <= 0.03928 ? share / 12.92 : Math.pow((share + 0.055) / 1.055, 2.4);
  });
  return 0.2126 * r + 0.7152 * g + 0.0722 * b;
}

function contrast(one, other) {
  const [high, low] = [luminance(one), luminance(other)].sort((a, b) => b - a);
  return (high + 0.05) / (low + 0.05);
}

// The colour behind a text. A flag stands on the rectangle drawn before it.
function backgroundOf(element) {
  if (element.classList.contains('flag')) return getComputedStyle(element.previousElementSibling).fill;
  for (let one = element; one; one = one.parentElement) {
    const colour = getComputedStyle(one).backgroundColor;
    if (channels(colour)[3] === 1) return colour;
  }
  return 'rgb(255, 255, 255)';
}

function ownTexts(element) {
  return [...element.childNodes].filter((node) => node.nodeType === Node.TEXT_NODE);
}

function ownText(element) {
  return ownTexts(element).map((node) => node.textContent.trim()).join('');
}

function rectsOf(node) {
  const range = document.createRange();
  range.selectNodeContents(node);
  return [...range.getClientRects()];
}

// Each text that is visible: how it contrasts, how high its letters are, in how many lines it stands.
function texts() {
  return [...document.body.querySelectorAll('*')].filter((element) => ownText(element) !== '' &&
      !element.closest('script, title, noscript') && element.checkVisibility() && element.getClientRects().length > 0).map((element) => {
    const [style, box] = [getComputedStyle(element), element.getBoundingClientRect()];
    const svg = element.closest('svg');
    const scale = svg ? svg.getBoundingClientRect().width / svg.viewBox.baseVal.width : 1;
    const rows = new Set(ownTexts(element).flatMap(rectsOf).map((one) => Math.round(one.top / 6)));
    return { text: ownText(element), contrast: contrast(svg ? style.fill : style.color, backgroundOf(element)),
      pixels: parseFloat(style.fontSize) * scale, lines: svg ? 1 : rows.size, left: box.left, right: box.right };
  });
}

function readout() {
  const box = document.getElementById('readout');
  if (box.hidden) return null;
  const all = { time: box.querySelector('b').textContent, left: box.getBoundingClientRect().left, top: box.getBoundingClientRect().top };
  for (const name of box.querySelectorAll('dt')) all[name.textContent] = name.nextElementSibling.textContent;
  return all;
}

function boxOf(selector) {
  const { left, top, width, height } = document.querySelector(selector).getBoundingClientRect();
  return { left, top, width, height };
}

function dot() {
  const circle = document.querySelector('circle.dot');
  const svg = circle.ownerSVGElement.getBoundingClientRect();
  return { x: Number(circle.getAttribute('cx')), y: Number(circle.getAttribute('cy')), left: svg.left, top: svg.top,
    isShown: circle.getAttribute('visibility') === 'visible', isDashed: circle.getAttribute('stroke-dasharray') !== 'none' };
}
