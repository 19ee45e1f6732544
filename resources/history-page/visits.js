// What was visited: read, made ready for the search, and kept.

const blockSize = 16384;     // bytes of rows that are read, folded and searched together
const blocksKept = 96;       // of those that were shown last, as objects

// Numbers without end: an array of objects would keep the collector busy.
class Numbers {
  constructor(Kind) {
    this.values = new Kind(256);
    this.length = 0;
  }

  push(value) {
    if (this.length === this.values.length) {
      const larger = new this.values.constructor(2 * this.length);
      larger.set(this.values);
      this.values = larger;
    }
    this.values[this.length++] = value;
  }
}

// The largest of 0 ... count - 1 whose value is not beyond the limit, values rising; 0 when there is none.
function lastWithin(count, valueAt, limit) {
  let low = 0;
  let high = count - 1;
  while (low < high) {
    const middle = (low + high + 1) >> 1;
    if (valueAt(middle) <= limit) low = middle; else high = middle - 1;
  }
  return low;
}

const foreign = /[^\x20-\x7e]/;
const unlikeKeys = /[\x00-\x1f\x7f\u00a0\u2010-\u2015\u2018-\u201e\u2026]/g;
const keys = { '“': '"', '”': '"', '„': '"', '‘': "'", '’': "'", '…': '...' };

const apart = /[łøđßæœıς\u00ad\u200b-\u200d]/g;
const plain = { ł: 'l', ø: 'o', đ: 'd', ß: 'ss', æ: 'ae', œ: 'oe', ı: 'i', ς: 'σ' };

// Without case, accents and the dashes and quotes that no keyboard has.
function fold(text) {
  if (foreign.test(text)) {
    text = text.replace(unlikeKeys, each => keys[each] ?? (each < '\u2010' ? ' ' : '-'));
    if (foreign.test(text)) {
      text = text.normalize('NFD').replace(/\p{M}+/gu, '').toLowerCase();
      text = text.replace(apart, each => plain[each] ?? '');
    }
  }
  return text.toLowerCase();
}

const wordsOf = text => fold(text).split(' ').filter(Boolean);

// Which two and which three characters follow each other somewhere in a text, each a bit of 8192 that it shares with
// others: what lacks one of a word's bits lacks the word.
class Trace {
  bits = new Uint32Array(256);

  static ofTwo(a, b) { return (a * 37 + b) & 8191; }
  static ofThree(a, b, c) { return ((a * 37 + b) * 37 + c) & 8191; }

  static placesOf(word) {
    const codes = Array.from({ length: word.length }, (_, at) => word.charCodeAt(at));
    if (codes.length === 2) return [Trace.ofTwo(...codes)];
    return codes.slice(2).map((code, at) => Trace.ofThree(codes[at], codes[at + 1], code));
  }

  constructor(text) {
    const { bits } = this;
    let [a, b] = [0, 0];
    for (let at = 0; at < text.length; ++at) {
      const c = text.charCodeAt(at);
      const two = Trace.ofTwo(b, c);
      const three = Trace.ofThree(a, b, c);
      bits[two >> 5] |= 1 << (two & 31);
      bits[three >> 5] |= 1 << (three & 31);
      a = b;
      b = c;
    }
  }

  has(place) { return (this.bits[place >> 5] >> (place & 31)) & 1; }
}

// As a person would type it.
function readable(address) {
  try {
    return address.includes('%') ? decodeURI(address) : address;
  } catch {
    return address;
  }
}

// Rows come as JSON in blocks and stay so; only what is on the screen is kept as objects. `folded` has one line for
// each row, which begins at its place in `starts`.
const visits = {
  blocks: [],
  firstRows: new Numbers(Uint32Array),
  times: new Numbers(Float64Array),
  shown: new Map(),

  get count() { return this.times.length; },

  parse(bytes) {
    const text = new TextDecoder().decode(bytes);
    return JSON.parse(`${text.startsWith('[') ? '' : '['}${text}${text.endsWith(']') ? '' : ']'}`);
  },

  add(bytes) {
    const found = this.parse(bytes);
    const starts = new Uint32Array(found.length + 1);
    let folded = '';
    this.firstRows.push(this.count);
    found.forEach((row, index) => {
      this.times.push(row.d);
      folded += `${fold(row.t)}\t${fold(readable(row.u))}\n`;
      starts[index + 1] = folded.length;
    });
    this.blocks.push({ bytes, folded, starts, trace: new Trace(folded) });
  },

  row(index) {
    const at = lastWithin(this.blocks.length, each => this.firstRows.values[each], index);
    let found = this.shown.get(at);
    if (found) this.shown.delete(at); else found = this.parse(this.blocks[at].bytes);
    this.shown.set(at, found);
    if (this.shown.size > blocksKept) this.shown.delete(this.shown.keys().next().value);
    return found[index - this.firstRows.values[at]];
  },
};

// Cuts a stream of bytes between rows: a quote in a text is escaped, so these four stand nowhere else.
class Cutter {
  bytes = new Uint8Array(8 * blockSize);
  end = 0;
  looked = 0;  // there is no cut before this place

  isCut(at) {
    const { bytes } = this;
    return bytes[at] === 0x2c && bytes[at - 1] === 0x7d && bytes[at + 1] === 0x7b && bytes[at + 2] === 0x22;
  }

  cutAfter(start) {
    for (let at = Math.min(start + blockSize, this.end - 3); at > start; --at) if (this.isCut(at)) return at;
    for (let at = Math.max(start + blockSize, this.looked); at < this.end - 2; ++at) if (this.isCut(at)) return at;
    this.looked = Math.max(this.looked, this.end - 2);
    return -1;
  }

  append(chunk) {
    if (this.end + chunk.length > this.bytes.length) {
      const larger = new Uint8Array(2 * (this.end + chunk.length));
      larger.set(this.bytes.subarray(0, this.end));
      this.bytes = larger;
    }
    this.bytes.set(chunk, this.end);
    this.end += chunk.length;
  }

  *blocks(chunk) {
    this.append(chunk);
    let start = 0;
    for (let cut; this.end - start >= blockSize && (cut = this.cutAfter(start)) > 0; start = cut + 1) {
      yield this.bytes.slice(start, cut);
    }
    this.looked -= start;
    this.bytes.copyWithin(0, start, this.end);
    this.end -= start;
  }

  rest() { return this.bytes.slice(0, this.end); }
}
