"use strict";
// Tables sort by their heads, and long ones filter; all folds open for the printer. The page reads without this.
const number = text => { const value = parseFloat(text.replaceAll(",", "")); return isNaN(value) ? -Infinity : value; };
const words = new Intl.Collator(undefined, {numeric: true});

function sortBy(table, head) {
  const body = table.tBodies[0], numbers = head.className === "n", turn = head.getAttribute("aria-sort") === "ascending" ? -1 : 1;
  const keyed = [...body.rows].map(row => {
    const text = row.cells[head.cellIndex].textContent;
    return {row, key: numbers ? number(text) : text};
  });
  keyed.sort((a, b) => turn * (numbers ? a.key - b.key || 0 : words.compare(a.key, b.key)));
  for (const each of head.parentElement.cells) each.removeAttribute("aria-sort");
  head.setAttribute("aria-sort", turn > 0 ? "ascending" : "descending");
  body.remove();
  body.append(...keyed.map(each => each.row));
  table.append(body);
}

function filtered(table) {
  const tools = document.createElement("div"), label = document.createElement("label"), input = document.createElement("input");
  const count = document.createElement("output");
  tools.className = "tools";
  label.append("Only rows with ", input);
  input.type = "search";
  input.addEventListener("input", () => {
    const word = input.value.toLowerCase();
    let shown = 0;
    for (const row of table.tBodies[0].rows) {
      row.hidden = !row.textContent.toLowerCase().includes(word);
      shown += row.hidden ? 0 : 1;
    }
    count.textContent = word ? shown + " of " + table.tBodies[0].rows.length : "";
  });
  tools.append(label, count);
  table.parentElement.before(tools);
}

for (const table of document.querySelectorAll("table")) {
  for (const head of table.tHead.rows[0].cells) {
    const button = document.createElement("button");
    button.type = "button";
    button.append(...head.childNodes);
    button.addEventListener("click", () => sortBy(table, head));
    head.append(button);
  }
  if (table.tBodies[0].rows.length > 15) filtered(table);
}

for (const section of document.querySelectorAll("main > section")) {
  const folds = section.querySelectorAll("details");
  if (folds.length < 2) continue;
  const tools = document.createElement("div");
  tools.className = "tools";
  for (const [text, open] of [["Unfold all", true], ["Fold all", false]]) {
    const button = document.createElement("button");
    button.type = "button";
    button.textContent = text;
    button.setAttribute("aria-label", text + " in " + section.querySelector("h2").textContent);
    button.addEventListener("click", () => { for (const fold of folds) fold.open = open; });
    tools.append(button);
  }
  folds[0].before(tools);
}

let folded = [];
addEventListener("beforeprint", () => { folded = [...document.querySelectorAll("details:not([open])")]; for (const fold of folded) fold.open = true; });
addEventListener("afterprint", () => { for (const fold of folded) fold.open = false; });
