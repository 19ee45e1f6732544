// The looks of the button that pops a video out into a window of its own.
(() => {
  'use strict';
  const id = 'velto-injected-styles';
  const css = `
.velto-button {
  position: absolute; top: calc(50% + 150px); right: 10px; width: 40px; height: 40px; box-sizing: border-box;
  border-radius: 8px; cursor: pointer; z-index: 2147483647; display: flex; align-items: center; justify-content: center;
  opacity: 0; pointer-events: none; transition: all 0.2s ease, transform 0.2s ease;
  background: rgba(128, 128, 128, 0.3);
  -webkit-backdrop-filter: blur(12px); backdrop-filter: blur(12px);
  border: 1px solid rgba(255, 255, 255, 0.2); box-shadow: 0 4px 12px rgba(0, 0, 0, 0.15);
  transform: translateY(-50%);
}
.velto-button:hover {
  background: rgba(128, 128, 128, 0.4); border-color: rgba(255, 255, 255, 0.35);
  transform: translateY(-50%) scale(1.05); box-shadow: 0 6px 16px rgba(0, 0, 0, 0.2);
}
.velto-button:active { transform: translateY(-50%) scale(0.95); }
.velto-button svg { width: 22px; height: 22px; stroke: white; stroke-width: 2; fill: none; }
.velto-video-container:hover .velto-button, .velto-button:hover { opacity: 1; pointer-events: auto; }
.velto-video-container { position: relative; }
`;
  try {
    if (!document.head || document.getElementById(id)) return;
    const style = document.createElement('style');
    style.id = id;
    style.textContent = css;
    document.head.appendChild(style);
    if (style.sheet) return;
    // The page's content security policy allows no style element; it has no say in a style sheet object.
    const sheet = new CSSStyleSheet();
    sheet.replaceSync(css);
    document.adoptedStyleSheets = [...document.adoptedStyleSheets, sheet];
  } catch {
    // A page that breaks the document's own functions goes without.
  }
})();
