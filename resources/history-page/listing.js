// What is listed, and the search for it.

const rowHeight = 56;  // pixels
const dayHeight = 38;

// Rows, newest first, with a heading for each day. An entry is a row's place in this list.
class Listing {
  chosen = new Numbers(Uint32Array);
  dayFirst = new Numbers(Uint32Array);
  dayTime = new Numbers(Float64Array);
  dayStart = 1;
  dayEnd = 0;

  get count() { return this.chosen.length; }
  get days() { return this.dayFirst.length; }
  get height() { return this.count * rowHeight + this.days * dayHeight; }

  add(row) {
    const time = visits.times.values[row];
    if (!(time >= this.dayStart && time < this.dayEnd)) this.beginDay(time);
    this.chosen.push(row);
  }

  beginDay(time) {
    const date = new Date(time);
    this.dayStart = date.setHours(0, 0, 0, 0);
    this.dayEnd = date.setDate(date.getDate() + 1);
    this.dayFirst.push(this.count);
    this.dayTime.push(time);
  }

  row(entry) { return visits.row(this.chosen.values[entry]); }
  dayOf(entry) { return lastWithin(this.days, day => this.dayFirst.values[day], entry); }
  topOfDay(day) { return this.dayFirst.values[day] * rowHeight + day * dayHeight; }
  topOf(entry) { return entry * rowHeight + (this.dayOf(entry) + 1) * dayHeight; }
  dayAt(y) { return lastWithin(this.days, day => this.topOfDay(day), y); }

  entryAt(y) {
    const day = this.dayAt(y);
    const entry = this.dayFirst.values[day] + Math.floor((y - this.topOfDay(day) - dayHeight) / rowHeight);
    const end = day + 1 < this.days ? this.dayFirst.values[day + 1] : this.count;
    return Math.max(this.dayFirst.values[day], Math.min(entry, end - 1));
  }
}

// Finds the rows that hold all words. One that goes on from a search for less looks only where that one found
// something, and then at what it had not seen yet.
class Search {
  listing = new Listing();
  fruitful = [];

  constructor(words, before) {
    this.words = words;
    this.places = words.flatMap(Trace.placesOf);
    const goesOn = before?.words.length && before.words.every(old => words.some(word => word.includes(old)));
    this.again = goesOn ? [...before.fruitful, ...before.again.slice(before.nextAgain)] : [];
    this.nextAgain = 0;
    this.next = goesOn ? before.next : 0;
  }

  get isDone() { return this.nextAgain === this.again.length && this.next === visits.blocks.length; }

  advance(milliseconds, enough = Infinity) {
    const deadline = performance.now() + milliseconds;
    for (let count = 1; !this.isDone && this.listing.count < enough; ++count) {
      this.scan(this.nextAgain < this.again.length ? this.again[this.nextAgain++] : this.next++);
      if (count % 16 === 0 && performance.now() > deadline) return;
    }
  }

  scan(at) {
    const before = this.listing.count;
    const first = visits.firstRows.values[at];
    const { folded, starts, trace } = visits.blocks[at];
    if (!this.words.length) {
      for (let row = 0; row + 1 < starts.length; ++row) this.listing.add(first + row);
      return;
    }
    if (!this.places.every(place => trace.has(place))) return;
    // The word that comes last is likely to be the rarest.
    const places = this.words.map(word => folded.indexOf(word));
    if (Math.min(...places) < 0) return;
    let found = Math.max(...places);
    const rarest = this.words[places.indexOf(found)];
    const others = this.words.filter(word => word !== rarest);
    for (let row = 0; found >= 0; found = folded.indexOf(rarest, starts[++row])) {
      while (starts[row + 1] <= found) ++row;
      const line = others.length && folded.slice(starts[row], starts[row + 1]);
      if (others.every(word => line.includes(word))) this.listing.add(first + row);
    }
    if (this.listing.count > before) this.fruitful.push(at);
  }
}
