// The header of each page: list of pages on a narrow screen, dark and light, search. Without scripts a page is whole, but
// for these.
import { find, readable } from "./search.js";

const root = document.documentElement;
const base = new URL(root.dataset.base + "/", location.href);
const byId = (id) => document.getElementById(id);

function openMenu() {
    const menu = byId("menu");
    menu.hidden = false;
    menu.addEventListener("click", () => {
        const isOpen = byId("pages").classList.toggle("open");
        menu.setAttribute("aria-expanded", String(isOpen));
    });
}

function nameTheme() {
    byId("theme").textContent = root.dataset.theme === "dark" ? "Light" : "Dark";
}

function openTheme() {
    const button = byId("theme");
    button.hidden = false;
    nameTheme();
    button.addEventListener("click", () => {
        root.dataset.theme = root.dataset.theme === "dark" ? "light" : "dark";
        nameTheme();
        try {
            localStorage.setItem("theme", root.dataset.theme);
        } catch {
            // chosen for this page alone
        }
    });
}

// ---- search ----

let index = null;

async function loadIndex() {
    index ??= fetch(new URL("search/search_index.json", base)).then((answer) => answer.json());
    return (await index).docs.map(readable);
}

function resultRow(result) {
    const row = document.createElement("li");
    const link = document.createElement("a");
    link.href = new URL(result.location, base).href;
    const title = document.createElement("strong");
    title.textContent = result.title;
    const text = document.createElement("span");
    text.textContent = result.excerpt;
    link.append(title, text);
    row.append(link);
    return row;
}

async function showResults(query) {
    const found = byId("found");
    if (query.trim() === "") return found.replaceChildren();
    let results;
    try {
        results = find(await loadIndex(), query, 12);
    } catch {
        index = null; // tried again with the next letter
        found.textContent = "The search needs a web server: ./site --serve";
        return;
    }
    if (byId("query").value !== query) return; // overtaken by a later letter
    const list = document.createElement("ul");
    list.append(...results.map(resultRow));
    found.replaceChildren(results.length > 0 ? list : "Nothing found");
}

function openSearch() {
    const query = byId("query");
    document.querySelector(".search").hidden = false;
    query.addEventListener("input", () => showResults(query.value));
    document.addEventListener("keydown", (event) => {
        if (event.key === "Escape" && byId("found").childNodes.length > 0) {
            query.value = "";
            byId("found").replaceChildren();
            query.focus();
        }
    });
}

openMenu();
openTheme();
openSearch();
