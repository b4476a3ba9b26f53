// Runs in the page of a report: what a reader would stumble over, told to the window that shows the page.
"use strict";

const overlap = (a, b) => Math.min(a.right, b.right) - Math.max(a.left, b.left) > 2 && Math.min(a.bottom, b.bottom) - Math.max(a.top, b.top) > 3;

/** Texts of a picture that lie over each other, in pixels of the screen. */
function overlaps(picture) {
  const texts = [...picture.querySelectorAll("text")].map((each) => ({ words: each.textContent, at: each.getBoundingClientRect() }));
  const found = [];
  texts.forEach((one, i) => texts.slice(i + 1).forEach((two) => overlap(one.at, two.at) && found.push(`${one.words} / ${two.words}`)));
  return found;
}

async function look() {
  for (const each of document.querySelectorAll("details")) each.open = true;
  const told = (await axe.run(document, { resultTypes: ["violations"] })).violations;
  const background = getComputedStyle(document.body).backgroundColor.match(/\d+/g).map(Number);
  parent.postMessage({
    width: innerWidth,
    beyond: Math.max(0, document.documentElement.scrollWidth - innerWidth),
    asked: performance.getEntriesByType("resource").map((each) => each.name),
    overlaps: [...document.querySelectorAll("svg")].flatMap(overlaps),
    violations: told.map((each) => `${each.id}: ${each.nodes[0].html.slice(0, 200)}`),
    dark: background.every((part) => part < 128),
    sorters: document.querySelectorAll("th button").length,
  }, "*");
}
look();
