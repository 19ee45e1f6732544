// Makes a channel of the page's world prove that a message comes from the main frame. Runs in that world, before any
// script of the page, in the main frame only. What it needs later it takes hold of now: pages change what they like.
(function (channel, tokenEvent, readyEvent) {
  const handler = window.webkit && webkit.messageHandlers[channel];
  // A page that writes itself anew runs this again, with the same window.
  if (!handler || Object.prototype.hasOwnProperty.call(handler, 'postMessage')) return;

  const { apply } = Reflect;
  const nativePost = handler.postMessage;
  const token = Array.from(crypto.getRandomValues(new Uint8Array(16)), n => n.toString(16).padStart(2, '0')).join('');

  const postMessage = function (body) {
    return apply(nativePost, handler, [{ token, body }]);
  };
  Object.defineProperty(handler, 'postMessage', { value: postMessage, configurable: true, writable: true });
  // The engine makes the handler's object anew, without its property, once nobody holds it.
  Object.defineProperty(window, Symbol(), { value: handler });

  // The other script may run before this one or after it.
  const give = () => !window.dispatchEvent(new InputEvent(tokenEvent, { data: token, cancelable: true }));
  if (!give()) window.addEventListener(readyEvent, give, { once: true });
})
