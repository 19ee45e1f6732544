// What is on the screen.

const tallest = 8000000;     // pixels; the engine cannot lay out one much taller

const element = id => document.getElementById(id);
const [list, rows, pinned, search, notice] = ['list', 'rows', 'pinned', 'search', 'notice'].map(element);
const site = new URLSearchParams(location.search).get('domain') ?? '';

// The page's texts are English, and so are its dates; whether the clock has 12 or 24 hours is the person's choice.
const language = navigator.languages.find(each => /^en\b/.test(each)) ?? 'en';
const { hourCycle } = new Intl.DateTimeFormat(undefined, { hour: 'numeric' }).resolvedOptions();
const clock = new Intl.DateTimeFormat(language, { hour: 'numeric', minute: '2-digit', hourCycle });
const dayOfThisYear = new Intl.DateTimeFormat(language, { weekday: 'long', day: 'numeric', month: 'long' });
const dayOfAnyYear =
  new Intl.DateTimeFormat(language, { weekday: 'long', day: 'numeric', month: 'long', year: 'numeric' });
const counted = (number, noun) => `${number.toLocaleString(language)} ${noun}${number === 1 ? '' : 's'}`;

let everything = new Search([]);
let found = everything;
let active = -1;
const elements = new Map();  // by entry, and by -1 - day
const spare = { row: [], day: [] };

// A list taller than an element can be moves under a shorter one: `top` is where the person is in it, `scroll` what
// the element says. Small steps are taken as they are, a long one is the scroll bar's and means a part of the whole.
const view = {
  top: 0,
  scroll: 0,
  get height() { return list.clientHeight; },
  get lowest() { return Math.max(0, found.listing.height - this.height); },
  get reach() { return Math.max(0, Math.min(found.listing.height, tallest) - this.height); },

  scrolled() {
    const step = list.scrollTop - this.scroll;
    this.scroll += step;
    if (this.reach === this.lowest) this.top = this.scroll;
    else if (Math.abs(step) > 2 * this.height) this.top = this.scroll / this.reach * this.lowest;
    else this.top = Math.max(0, Math.min(this.top + step, this.lowest));
    const isAtAnEnd = this.scroll <= 0 || this.scroll >= this.reach;
    if (isAtAnEnd) this.goTo(this.top);
  },

  goTo(top) {
    this.top = Math.max(0, Math.min(top, this.lowest));
    list.scrollTop = this.reach === this.lowest ? this.top : this.top / this.lowest * this.reach;
    this.scroll = list.scrollTop;
    if (this.reach === this.lowest) this.top = this.scroll;
  },

  reveal(entry) {
    const top = found.listing.topOf(entry);
    if (top - dayHeight < this.top) this.goTo(top - dayHeight);
    else if (top + rowHeight > this.top + this.height) this.goTo(top + rowHeight - this.height);
  },
};

function dayName(time) {
  const date = new Date(time);
  if (isNaN(date)) return 'Unknown day';
  const days = Math.round((new Date().setHours(0, 0, 0, 0) - new Date(time).setHours(0, 0, 0, 0)) / 86400000);
  if (days === 0) return 'Today';
  if (days === 1) return 'Yesterday';
  return (date.getFullYear() === new Date().getFullYear() ? dayOfThisYear : dayOfAnyYear).format(date);
}

// The host without "www.", and the address as it is shown.
function namesOf(address) {
  const [, host = '', rest = ''] = /^https?:\/\/(?:[^/?#]*@)?(?:www\.)?([^/?#]*)(.*)$/is.exec(address) ?? [];
  return { host, shown: host ? host + readable(rest).replace(/^\/$/, '') : address };
}

const canOpen = row => /^https?:\/\//i.test(row.u);

function fillRow(target, entry) {
  const row = found.listing.row(entry);
  const { host, shown } = namesOf(row.u);
  const part = name => target.querySelector(name);
  const letter = (host || row.u).match(/[\p{L}\p{N}]/u)?.[0] ?? '?';
  let hue = 0;
  for (const each of host) hue = (hue * 31 + each.codePointAt(0)) % 360;
  target.style.setProperty('--hue', hue);
  part('.tile').textContent = letter.toUpperCase();
  part('.title').textContent = row.t || shown;
  part('.address').textContent = shown;
  part('.time').textContent = isNaN(new Date(row.d)) ? '' : clock.format(row.d);
  part('.source').textContent = row.s === 's' ? 'Safari' : 'Velto';
  part('a').title = row.t ? `${row.t}\n${row.u}` : row.u;
  if (canOpen(row)) part('a').href = row.u; else part('a').removeAttribute('href');
  target.id = `entry-${entry}`;
  target.ariaRowIndex = entry + found.listing.dayOf(entry) + 2;
}

function makeRow() {
  return document.importNode(element('row').content, true).firstElementChild;
}

function makeDay() {
  const made = document.createElement('div');
  made.className = 'day';
  made.role = 'row';
  made.append(document.createElement('div'));
  made.firstChild.role = 'gridcell';
  made.firstChild.ariaColSpan = 3;
  return made;
}

function elementFor(key) {
  if (elements.has(key)) return elements.get(key);
  const isDay = key < 0;
  const made = (isDay ? spare.day.pop() : spare.row.pop()) ?? (isDay ? makeDay() : makeRow());
  if (isDay) {
    made.firstChild.textContent = dayName(found.listing.dayTime.values[-1 - key]);
    made.ariaRowIndex = found.listing.dayFirst.values[-1 - key] - key;
  } else {
    fillRow(made, key);
  }
  made.place = NaN;
  if (!made.isConnected) rows.append(made);
  made.hidden = false;
  elements.set(key, made);
  return made;
}

function place(key, top) {
  const target = elementFor(key);
  const at = Math.round(top - view.top + view.scroll);
  if (target.place === at) return;
  target.place = at;
  target.style.transform = `translateY(${at}px)`;
}

function release(isWanted) {
  for (const [key, each] of elements) {
    if (isWanted(key)) continue;
    elements.delete(key);
    each.hidden = true;
    each.removeAttribute('id');
    (key < 0 ? spare.day : spare.row).push(each);
  }
}

let shownOn = '';
function render() {
  const { listing } = found;
  rows.style.height = `${Math.min(listing.height, tallest)}px`;
  pinned.hidden = !listing.count;
  if (list.hidden || !listing.count) return;
  list.ariaRowCount = listing.count + listing.days;
  const today = new Date().toDateString();
  if (today !== shownOn) release(() => false);
  shownOn = today;
  const margin = view.height / 2;
  const [first, last] = [view.top - margin, view.top + view.height + margin].map(y => listing.entryAt(y));
  const [firstDay, lastDay] = [listing.dayOf(first), listing.dayOf(last)];
  const isNear = key => (key < 0 ? -1 - key >= firstDay && -1 - key <= lastDay : key >= first && key <= last);
  release(key => isNear(key) || key === active);
  for (let day = firstDay; day <= lastDay; ++day) place(-1 - day, listing.topOfDay(day));
  for (let entry = first; entry <= last; ++entry) place(entry, listing.topOf(entry));
  if (active >= 0) place(active, listing.topOf(active));
  pinned.textContent = dayName(listing.dayTime.values[listing.dayAt(view.top)]);
  for (const [key, each] of elements) {
    if (key < 0) continue;
    each.classList.toggle('chosen', key === active);
    each.ariaSelected = key === active;
  }
  if (active >= 0) list.setAttribute('aria-activedescendant', `entry-${active}`);
  else list.removeAttribute('aria-activedescendant');
  highlight();
}

// Marks the words in what is shown, where the text is as long in small letters.
function highlight() {
  if (!CSS.highlights) return;
  CSS.highlights.delete('found');
  if (!found.words.length) return;
  const ranges = [];
  for (const each of rows.querySelectorAll('.row:not([hidden]) :is(.title, .address)')) {
    const text = fold(each.textContent);
    if (text.length !== each.textContent.length) continue;
    for (const word of found.words) {
      const at = text.indexOf(word);
      if (at < 0) continue;
      const range = new Range();
      range.setStart(each.firstChild, at);
      range.setEnd(each.firstChild, at + word.length);
      ranges.push(range);
    }
  }
  CSS.highlights.set('found', new Highlight(...ranges));
}

function tell(heading, text, button, press) {
  const [title, body, action] = notice.children;
  notice.hidden = !heading;
  if (!heading || title.textContent === heading && body.textContent === text) return;
  title.textContent = heading;
  body.textContent = text;
  action.hidden = !button;
  action.textContent = button ?? '';
  action.onclick = press ?? null;
}

let announcing = 0;
function announce(text, delay = 0) {
  clearTimeout(announcing);
  announcing = setTimeout(() => { element('said').textContent = text; }, delay);
}

let toasting = 0;
function toast(text) {
  element('toast').textContent = text;
  element('toast').classList.add('seen');
  clearTimeout(toasting);
  toasting = setTimeout(() => element('toast').classList.remove('seen'), 1600);
  element('said').textContent = '';
  announce(text, 50);
}

const loading = { isOver: false, trouble: '' };

function tellWhyEmpty() {
  if (found.words.length) {
    tell('No Matches', `Nothing here contains “${search.value.trim()}”.`, 'Clear Search', clearSearch);
  } else if (site) {
    tell('No History', `No page of ${site} was visited.`, 'Show All Sites', () => location.assign('/'));
  } else {
    tell('No History', 'Pages that you visit appear here.');
  }
}

function showState() {
  const { count } = found.listing;
  const isSettled = loading.isOver && found.isDone;
  element('progress').hidden = isSettled || Boolean(loading.trouble);
  list.hidden = (count === 0 && isSettled) || Boolean(loading.trouble);
  if (loading.trouble) {
    element('count').textContent = '';
    tell('The history could not be loaded', loading.trouble, 'Try Again', load);
  } else if (count === 0 && isSettled) {
    element('count').textContent = '';
    clearTimeout(announcing);
    tellWhyEmpty();
  } else {
    const noun = found.words.length ? 'match' : 'visit';
    const text = counted(count, noun).replace(/matchs$/, 'matches');
    element('count').textContent = isSettled ? text : `${text} so far`;
    tell('');
    if (isSettled && found.words.length) announce(text, 500);
  }
}
