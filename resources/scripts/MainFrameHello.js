// Tells the application the token that its neighbour in the page's world has made. Runs in a world that no page sees
// into, in the main frame only; the channel is there for that world alone.
(function (channel, tokenEvent, readyEvent) {
  const tokens = window.tokens ??= {};
  const hello = () => webkit.messageHandlers[channel].postMessage(tokens[channel]);

  // Only the first: the page's own scripts come later, and could make one up.
  if (!(channel in tokens)) {
    const take = event => {
      event.preventDefault();
      event.stopImmediatePropagation();
      tokens[channel] = event.data;
      hello();
    };
    window.addEventListener(tokenEvent, take, { once: true, capture: true });
    window.dispatchEvent(new Event(readyEvent));
  }
  // The page comes back to where it was left, without running its scripts again.
  window.addEventListener('pageshow', event => {
    if (event.isTrusted && event.persisted) hello();
  });
})
