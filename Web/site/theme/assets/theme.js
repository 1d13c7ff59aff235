// Dark or light before anything is painted: what was chosen on this site, or else what the system has.
"use strict";
(() => {
    let chosen = null;
    try {
        chosen = localStorage.getItem("theme");
    } catch {
        // a browser that stores nothing: the system's choice
    }
    const isDark = chosen ? chosen === "dark" : matchMedia("(prefers-color-scheme: dark)").matches;
    document.documentElement.dataset.theme = isDark ? "dark" : "light";
})();
