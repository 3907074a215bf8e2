// Numbers and times as people read them.

function pad(number, digits = 2) {
  return String(number).padStart(digits, '0');
}

// The UTC time of day; without UTC, the time since the start of the run.
function clockTime(run, ms, digits = 3) {
  const text = new Date(run.utcMs === null ? Math.max(ms, 0) : run.utcMs + ms).toISOString().slice(11, 23);
  const days = run.utcMs === null ? Math.floor(Math.max(ms, 0) / 86400000) : 0;
  return (days > 0 ? days + ' d ' : '') + (digits > 0 ? text.slice(0, 9 + digits) : text.slice(0, 8));
}

const kMonths = ['January', 'February', 'March', 'April', 'May', 'June', 'July', 'August', 'September', 'October',
  'November', 'December'];

function shortDate(run, ms, withYear = false) {
  const day = new Date(run.utcMs + ms);
  return day.getUTCDate() + ' ' + kMonths[day.getUTCMonth()].slice(0, 3) + (withYear ? ' ' + day.getUTCFullYear() : '');
}

function longDate(run, ms) {
  const day = new Date(run.utcMs + ms);
  return day.getUTCDate() + ' ' + kMonths[day.getUTCMonth()] + ' ' + day.getUTCFullYear();
}

// "2024-05-01 12:00:00.000"; an unknown time stays "-".
function tableTime(utc) {
  return utc.replace('T', ' ').replace('Z', '');
}

function duration(ms) {
  if (ms < 1000) return Math.round(ms) + ' ms';
  if (ms < 59950) return (ms / 1000).toFixed(1) + ' s';
  const seconds = Math.round(ms / 1000);
  if (seconds < 3600) return Math.floor(seconds / 60) + ' min ' + pad(seconds % 60) + ' s';
  if (seconds < 259200) return Math.floor(seconds / 3600) + ' h ' + pad(Math.floor(seconds / 60) % 60) + ' min';
  return Math.floor(seconds / 86400) + ' d ' + Math.floor(seconds / 3600) % 24 + ' h';
}

function number(value) {
  if (Math.abs(value) >= 1e9) return value.toExponential(1);
  const [whole, fraction] = (Number.isInteger(value) ? String(value) : value.toFixed(1)).split('.');
  const grouped = whole.replace('-', '\u2212').replace(/\B(?=(\d{3})+$)/g, '\u202f');
  return fraction === undefined ? grouped : grouped + '.' + fraction;
}

function several(count, one, many = one + 's') {
  return number(count) + ' ' + (count === 1 ? one : many);
}

function distance(metres) {
  return metres < 1000 ? Math.round(metres) + ' m' : number(metres / 1000) + ' km';
}

// Ten-thousandths of a minute as degrees.
function degrees(e4min, positive, negative, digits = 5) {
  return Math.abs(e4min / 600000).toFixed(digits) + '\u00b0\u202f' + (e4min < 0 ? negative : positive);
}

function placeText(place) {
  return degrees(place.lat, 'N', 'S') + ' ' + degrees(place.lon, 'E', 'W');
}

// "doorOpen" as "door open"
function words(name) {
  return name.replace(/([a-z])([A-Z])/g, '$1 $2').toLowerCase().replace(/^gps$/, 'GPS');
}

// The index of the last value in a sorted list that is at most the given value; -1 if there is none.
function lastNotAbove(list, value) {
  let low = 0;
  let high = list.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (list[middle] <= value) low = middle + 1; else high = middle;
  }
  return low - 1;
}
