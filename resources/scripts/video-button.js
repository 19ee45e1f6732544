// On the pages of the video site: a button on each video that pops it out into a window of its own, and
// moving the window by dragging the video.
(() => {
  'use strict';
  const site = 'youtube.com';
  if (!window.location.hostname.includes(site) || window.__veltoInjected) return;
  window.__veltoInjected = true;

  const scanDelay = 500;
  const addressInterval = 1000;
  const addressScanDelay = 1000;
  const dragThreshold = 3;
  const players = '#movie_player, #player, ytd-player';
  const listed = 'a[href*="watch"], ytd-thumbnail, ytd-video-renderer, ytd-compact-video-renderer';
  const draggable = 'video, #movie_player, .html5-video-container';
  const notDraggable = '.ytp-chrome-bottom, .ytp-chrome-top, .velto-button, button, a';

  // The channels are gone while the window closes.
  function post(channel, body) {
    try {
      window.webkit.messageHandlers[channel].postMessage(body);
    } catch {
      return;
    }
  }

  function getVideoId(url) {
    for (const pattern of [/[?&]v=([^&]+)/, /\/embed\/([^?&/]+)/, /\/shorts\/([^?&/]+)/, /youtu\.be\/([^?&/]+)/]) {
      const match = pattern.exec(url);
      if (match) return match[1];
    }
    return null;
  }

  function videoIdOf(video) {
    const pageId = getVideoId(window.location.href);
    if (pageId && video.closest(players)) return pageId;
    const container = video.closest(listed);
    const link = container && (container.querySelector('a[href*="watch"]') || container.closest('a[href*="watch"]'));
    return (link && getVideoId(link.href)) || pageId;
  }

  // Built piece by piece: the site's content security policy lets no markup through.
  function makeIcon() {
    const make = (name, attributes) => {
      const element = document.createElementNS('http://www.w3.org/2000/svg', name);
      for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
      return element;
    };
    const icon = make('svg', { viewBox: '0 0 24 24' });
    icon.append(make('rect', { x: 3, y: 3, width: 18, height: 18, rx: 2 }), make('path', { d: 'M9 9L15 15M15 9v6H9' }));
    return icon;
  }

  function popOut(video) {
    const videoId = videoIdOf(video);
    if (!videoId) {
      console.warn('Velto: Could not determine video ID');
      return;
    }
    const playing = !video.paused;
    post('velto', { player: 'youtube', videoId, playing, t: Math.floor(video.currentTime) || 0 });
    if (playing) video.pause();
  }

  function makeButton(video) {
    const button = document.createElement('div');
    button.className = 'velto-button';
    button.title = 'Pop out video';
    button.append(makeIcon());
    button.addEventListener('click', (event) => {
      event.preventDefault();
      event.stopImmediatePropagation();
      popOut(video);
    });
    return button;
  }

  const isStatic = (element) => window.getComputedStyle(element).position === 'static';

  function containerOf(video) {
    const ours = video.closest('.velto-video-container');
    if (ours) return ours;
    const player = video.closest('#movie_player, .html5-video-container, ytd-player');
    if (player && !isStatic(player)) return player;
    const parent = video.parentElement;
    if (parent && isStatic(parent)) parent.style.position = 'relative';
    return parent;
  }

  const seen = new WeakSet();

  function addButton(video) {
    if (seen.has(video)) return;
    const container = containerOf(video);
    if (!container) return;
    seen.add(video);
    container.classList.add('velto-video-container');
    if (!container.querySelector('.velto-button')) container.append(makeButton(video));
  }

  function scan() {
    const main = document.querySelector('#movie_player video, ytd-player video, .html5-main-video');
    if (main) addButton(main);
    document.querySelectorAll('video').forEach(addButton);
  }

  function watch() {
    let pending;
    const rescan = (mutations) => {
      if (!mutations.some((mutation) => mutation.addedNodes.length > 0)) return;
      clearTimeout(pending);
      pending = setTimeout(scan, scanDelay);
    };
    if (document.body) new MutationObserver(rescan).observe(document.body, { childList: true, subtree: true });
    let address = window.location.href;
    setInterval(() => {
      if (window.location.href === address) return;
      address = window.location.href;
      setTimeout(scan, addressScanDelay);
    }, addressInterval);
  }

  // Screen positions, because the page moves along with the window.
  let dragFrom = null;

  document.addEventListener('mousedown', (event) => {
    const target = event.target;
    if (event.button !== 0 || !(target instanceof Element)) return;
    if (!target.closest(draggable) || target.closest(notDraggable)) return;
    dragFrom = { x: event.screenX, y: event.screenY };
  }, true);

  document.addEventListener('mousemove', (event) => {
    if (!dragFrom) return;
    if ((event.buttons & 1) === 0) {
      dragFrom = null;
      return;
    }
    const deltaX = event.screenX - dragFrom.x;
    const deltaY = event.screenY - dragFrom.y;
    if (Math.abs(deltaX) <= dragThreshold && Math.abs(deltaY) <= dragThreshold) return;
    post('windowDrag', { action: 'move', deltaX, deltaY });
    dragFrom = { x: event.screenX, y: event.screenY };
  }, true);

  document.addEventListener('mouseup', () => { dragFrom = null; }, true);

  scan();
  watch();
})();
