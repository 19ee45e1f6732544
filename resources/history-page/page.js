// What happens: loading, searching, keys and clicks.

const sliceTime = 12;        // milliseconds of work before the page may paint
const updateTime = 100;      // between two looks at how far the loading is
const answerTime = 40;       // the same when the person waits for what they typed
const screenful = 60;        // rows

// A timer, because the messages of a channel overtake the engine's own work, frames too.
const breath = () => new Promise(resume => setTimeout(resume));

function update() {
  showState();
  render();
}

let isSearching = false;
async function goOnSearching() {
  if (isSearching) return;
  isSearching = true;
  let updated = performance.now();
  if (found.listing.count) await new Promise(requestAnimationFrame);  // what was found first is seen first
  while (!found.isDone) {
    await breath();
    found.advance(sliceTime);
    if (!found.isDone && found.listing.count > screenful && performance.now() - updated < updateTime) continue;
    update();
    updated = performance.now();
  }
  isSearching = false;
}

function lookFor(text) {
  const words = wordsOf(text);
  if (words.join(' ') === found.words.join(' ')) return;
  found = words.length ? new Search(words, found) : everything;
  active = -1;
  release(() => false);
  found.advance(answerTime, screenful);
  showState();
  view.goTo(0);
  render();
  goOnSearching();
}

function clearSearch() {
  search.value = '';
  lookFor('');
  search.focus();
}

function leaveSearch() {
  search.blur();
  getSelection().removeAllRanges();
  list.focus();
}

function choose(entry) {
  if (!found.listing.count) return;
  active = Math.max(0, Math.min(entry, found.listing.count - 1));
  view.reveal(active);
  render();
}

function open(entry) {
  const row = found.listing.row(entry);
  if (canOpen(row)) location.assign(row.u); else toast('This address cannot be opened here');
}

function copy(entry) {
  const before = document.activeElement;
  const text = document.createElement('textarea');
  text.value = found.listing.row(entry).u;
  text.ariaHidden = 'true';
  document.body.append(text);
  text.select();
  const isCopied = document.execCommand('copy');
  text.remove();
  before?.focus({ preventScroll: true });
  toast(isCopied ? 'Address copied' : 'The address could not be copied');
}

const steps = {
  ArrowDown: () => choose(active + 1),
  ArrowUp: () => (active > 0 ? choose(active - 1) : search.focus()),
  PageDown: () => choose(Math.max(active, 0) + Math.max(1, Math.floor(view.height / rowHeight) - 1)),
  PageUp: () => choose(active - Math.max(1, Math.floor(view.height / rowHeight) - 1)),
  Home: () => choose(0),
  End: () => choose(found.listing.count - 1),
  Enter: () => active >= 0 && open(active),
  c: () => active >= 0 && copy(active),
};

function pressedInSearch(event) {
  if (event.key === 'Escape') {
    if (search.value) clearSearch(); else leaveSearch();
  } else if (event.key === 'ArrowDown' && !list.hidden) {
    list.focus();
    choose(Math.max(active, 0));
  } else if (event.key === 'Enter' && search.value && found.listing.count) {
    open(Math.max(active, 0));
  } else {
    return;
  }
  event.preventDefault();
}

function pressed(event) {
  const isFind = event.key === 'f' && event.ctrlKey;
  if (event.isComposing || event.altKey || event.metaKey || (event.ctrlKey && !isFind)) return;
  if (event.target === search && !isFind) return pressedInSearch(event);
  const step = steps[event.key] ?? steps[event.key.toLowerCase()];
  if (event.key === '/' || isFind) {
    search.focus();
    search.select();
  } else if (event.target.closest?.('button, #chip') && event.key !== 'Escape') {
    return;
  } else if (event.key === 'Escape' && search.value) {
    clearSearch();
  } else if (step && !list.hidden) {
    if (document.activeElement !== list) list.focus();
    step();
  } else {
    return;
  }
  event.preventDefault();
}

function entryOf(target) {
  const row = target.closest?.('.row');
  return row ? Number(row.id.slice('entry-'.length)) : -1;
}

function clicked(event) {
  const entry = entryOf(event.target);
  if (entry < 0) return;
  choose(entry);
  if (event.target.closest('.copying')) copy(entry);
}

let frame = 0;
let resting = 0;
function scrolled() {
  if (list.scrollTop === view.scroll) return;
  view.scrolled();
  frame ||= requestAnimationFrame(() => { frame = 0; render(); });
  clearTimeout(resting);
  resting = setTimeout(settle, 200);
}

function settle() {
  view.scrolled();
  view.goTo(view.top);
  render();
}

async function readRows() {
  const response = await fetch(`/data.json${site && `?domain=${encodeURIComponent(site)}`}`);
  if (!response.ok) throw new Error(`Velto answered “${await response.text()}” (${response.status}).`);
  const reader = response.body.getReader();
  const cutter = new Cutter();
  let since = performance.now();
  let updated = -updateTime;
  const take = async bytes => {
    visits.add(bytes);
    if (visits.blocks.length > 1 && performance.now() - since < sliceTime) return;
    if (performance.now() - updated > updateTime) {
      found.advance(sliceTime);
      update();
      updated = performance.now();
    }
    await breath();
    since = performance.now();
  };
  for (let part; !(part = await reader.read()).done;) {
    for (const bytes of cutter.blocks(part.value)) await take(bytes);
  }
  await take(cutter.rest());
}

async function load() {
  Object.assign(visits, { blocks: [], firstRows: new Numbers(Uint32Array), times: new Numbers(Float64Array) });
  visits.shown.clear();
  release(() => false);
  everything = new Search([]);
  found = found.words.length ? new Search(found.words) : everything;
  Object.assign(loading, { isOver: false, trouble: '' });
  update();
  try {
    await readRows();
    loading.isOver = true;
  } catch (error) {
    loading.trouble = error.message;
  }
  update();
  goOnSearching();
}

function start() {
  if (site) {
    element('chip').hidden = false;
    element('chip').firstElementChild.textContent = site;
    element('chip').ariaLabel = `Only ${site}: show all sites`;
    document.title = `History – ${site}`;
  }
  search.value = history.state?.search ?? '';
  found = new Search(wordsOf(search.value));
  search.addEventListener('input', () => lookFor(search.value));
  document.addEventListener('keydown', pressed);
  list.addEventListener('click', clicked);
  list.addEventListener('scroll', scrolled, { passive: true });
  addEventListener('resize', settle);
  // Whoever comes back finds what they looked for.
  addEventListener('pagehide', () => history.replaceState({ search: search.value }, ''));
  search.focus();
  load();
}

// Whatever frames this page wants the person to press something without knowing what.
if (window.top === window) start();
else tell('History', 'This page is shown in a window of its own only.');
