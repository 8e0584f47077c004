{{! SPDX-FileCopyrightText: The Patchloom authors
    SPDX-License-Identifier: GPL-3.0-or-later

    The only help that needs a script: the patch under the pointer, or the one that the arrow keys have reached, is shown
    with its row of the sheet's table. }}"use strict";
(() => {
  const svgNames = "http://www.w3.org/2000/svg";

  const number = (element, name) => Number(element.getAttribute(name));

  const itemsOf = (table, row) => {
    const names = [...table.tHead.rows[0].cells].map((cell) => cell.textContent);
    return [...row.cells].map((cell, i) => [names[i], cell.textContent]);
  };

  class Sheet {
    constructor(figure) {
      this.view = figure.querySelector(".sheet-view");
      this.help = figure.querySelector(".patch-help");
      this.drawing = figure.querySelector("svg");
      this.table = figure.querySelector("table.patches");
      this.patches = [...this.drawing.querySelectorAll("[data-patch]")];
      const sorted = (values) => [...new Set(values)].sort((a, b) => a - b);
      this.columns = sorted(this.patches.map((patch) => number(patch, "x")));
      this.rows = sorted(this.patches.map((patch) => number(patch, "y")));
      this.byPlace = new Map(this.patches.map((patch) => [this.placeOf(patch).join(), patch]));
      this.start = this.byPlace.get([this.columns.length - 1, 0].join()) || this.patches[0];
      this.frames = [0, 1].map(() => {
        const frame = document.createElementNS(svgNames, "rect");
        frame.setAttribute("class", "pointed");
        frame.setAttribute("visibility", "hidden");
        return this.drawing.appendChild(frame);
      });
      this.drawing.addEventListener("pointerover", (event) => this.point(event.target));
      this.drawing.addEventListener("pointerdown", (event) => this.point(event.target));
      this.view.addEventListener("focus", () => this.show(this.shown || this.start));
      this.view.addEventListener("keydown", (event) => this.press(event));
    }

    placeOf(patch) {
      return [this.columns.indexOf(number(patch, "x")), this.rows.indexOf(number(patch, "y"))];
    }

    point(target) {
      if (target.dataset && target.dataset.patch) this.show(target);
    }

    press(event) {
      const steps = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
      const step = steps[event.key];
      if (!step || event.ctrlKey || event.altKey || event.metaKey) return;
      event.preventDefault();
      const [column, row] = this.placeOf(this.shown || this.start);
      const next = this.byPlace.get([column + step[0], row + step[1]].join());
      if (next) this.show(next);
    }

    show(patch) {
      this.shown = patch;
      for (const frame of this.frames) {
        for (const name of ["x", "y", "width", "height"]) frame.setAttribute(name, patch.getAttribute(name));
        frame.setAttribute("visibility", "visible");
      }
      const row = document.getElementById("patch-" + patch.dataset.patch);
      if (!row) return;
      const list = document.createElement("dl");
      for (const [name, value] of itemsOf(this.table, row)) {
        const item = list.appendChild(document.createElement("div"));
        item.appendChild(document.createElement("dt")).textContent = name;
        item.appendChild(document.createElement("dd")).textContent = value;
      }
      this.help.replaceChildren(list);
    }
  }

  const sheets = [...document.querySelectorAll("figure.sheet")].map((figure) => new Sheet(figure));

  // A link to a patch's row opens the table, and shows the patch on its sheet.
  const follow = () => {
    const row = location.hash.startsWith("#patch-") && document.getElementById(location.hash.slice(1));
    if (!row) return;
    row.closest("details").open = true;
    const label = location.hash.slice("#patch-".length);
    for (const sheet of sheets) {
      const patch = sheet.patches.find((one) => one.dataset.patch === label);
      if (!patch) continue;
      sheet.show(patch);
      sheet.view.scrollIntoView({ block: "nearest" });
    }
  };
  addEventListener("hashchange", follow);
  document.documentElement.classList.add("scripted");
  follow();
  document.documentElement.dataset.ready = "yes";
})();
