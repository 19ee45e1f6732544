// Tells the application how far the page is scrolled, so that it can be shown there again.
(() => {
  'use strict';
  if (window.__veltoScrollReporter) return;
  window.__veltoScrollReporter = true;

  const delay = 250;
  let pending = false;

  function report() {
    pending = false;
    try {
      window.webkit.messageHandlers.veltoScroll.postMessage({ x: window.scrollX || 0, y: window.scrollY || 0 });
    } catch {
      // The channel is gone while the window closes.
    }
  }

  function schedule() {
    if (pending) return;
    pending = true;
    setTimeout(report, delay);
  }

  window.addEventListener('scroll', schedule, { passive: true });
  window.addEventListener('pagehide', report);
  // A page that nobody scrolls still states its position, lest that of the page before it stay.
  setTimeout(report, 0);
})();
