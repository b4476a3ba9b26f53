// Searches the index that the site brings: an entry is [title, kind, address, text]. The index is a script, so that pages
// opened from a disk can load it; it is loaded when the field is first used.
"use strict";
(() => {
  const MOST = 40;
  const box = document.getElementById("search");
  const field = box.querySelector("input");
  const list = document.getElementById("found");
  const status = document.getElementById("found-number");
  const root = document.documentElement.dataset.root;

  const load = () => new Promise((done, failed) => {
    if (window.searchIndex) return done(window.searchIndex);
    const script = document.createElement("script");
    script.src = root + "search-index.js";
    script.onload = () => done(window.searchIndex);
    script.onerror = failed;
    document.head.append(script);
  });

  // Lower is better: the whole title, its beginning, a part of it, the text; shorter titles first.
  const rank = (entry, words) => {
    const title = entry[0].toLowerCase(), text = entry[3].toLowerCase();
    let sum = 0;
    for (const word of words) {
      const name = title.slice(title.lastIndexOf(".") + 1);
      if (title === word || name === word) sum += 0;
      else if (title.startsWith(word) || name.startsWith(word)) sum += 1;
      else if (title.includes(word)) sum += 2;
      else if (text.includes(word)) sum += 5;
      else return null;
    }
    return sum + title.length / 1000;
  };

  const show = (index) => {
    const words = field.value.toLowerCase().split(/\s+/).filter(Boolean);
    list.replaceChildren();
    list.hidden = words.length === 0;
    status.textContent = "";
    if (words.length === 0) return;
    const found = index.map((entry) => [rank(entry, words), entry]).filter(([order]) => order !== null);
    found.sort((a, b) => a[0] - b[0]);
    status.textContent = found.length === 0 ? "Nothing found" : `${found.length} found`;
    for (const [, [title, kind, address]] of found.slice(0, MOST)) {
      const link = document.createElement("a");
      const note = document.createElement("small");
      note.textContent = " " + kind;
      link.href = root + address;
      link.append(title, note);
      const item = document.createElement("li");
      item.append(link);
      list.append(item);
    }
    if (found.length === 0 || found.length > MOST) {
      const item = document.createElement("li");
      item.append(found.length === 0 ? "Nothing found." : `The first ${MOST} of ${found.length}.`);
      list.append(item);
    }
  };

  const search = () => load().then(show, () => { status.textContent = "The index of the search cannot be read."; });
  box.hidden = false;
  field.addEventListener("focus", load);
  field.addEventListener("input", search);
  box.addEventListener("submit", (event) => {
    event.preventDefault();
    const first = list.querySelector("a");
    if (first) location.href = first.href;
  });
  document.addEventListener("keydown", (event) => {
    if (event.key === "Escape" && !list.hidden) {
      list.hidden = true;
      field.focus();
    } else if (event.key === "/" && !/^(INPUT|TEXTAREA)$/.test(document.activeElement.tagName)) {
      event.preventDefault();
      field.focus();
    }
  });
  document.addEventListener("click", (event) => { if (!box.contains(event.target)) list.hidden = true; });
})();
