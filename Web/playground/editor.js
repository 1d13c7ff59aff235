// The editor of one text at a time: Lua in colours, completion of what scripts can call, errors underlined. It stands in a
// shadow root, where its styles are style sheets of the root: the page's policy forbids style elements.

import { autocompletion, closeBrackets, closeBracketsKeymap, completeAnyWord, completionKeymap } from "@codemirror/autocomplete";
import { defaultKeymap, history, historyKeymap, indentWithTab } from "@codemirror/commands";
import { bracketMatching, HighlightStyle, indentOnInput, indentUnit, StreamLanguage, syntaxHighlighting } from "@codemirror/language";
import { lua } from "@codemirror/legacy-modes/mode/lua";
import { linter, lintGutter, setDiagnostics } from "@codemirror/lint";
import { highlightSelectionMatches, searchKeymap } from "@codemirror/search";
import { EditorState } from "@codemirror/state";
import { drawSelection, EditorView, highlightActiveLine, highlightActiveLineGutter, keymap, lineNumbers } from "@codemirror/view";
import { tags } from "@lezer/highlight";
import { isScript } from "./game_files.js";

// Colours are the page's, by their names there, so that both themes are one.
const colours = HighlightStyle.define([
    { tag: tags.keyword, color: "var(--code-keyword)" },
    { tag: [tags.string, tags.special(tags.string)], color: "var(--code-string)" },
    { tag: [tags.number, tags.bool, tags.atom], color: "var(--code-number)" },
    { tag: tags.comment, color: "var(--code-comment)", fontStyle: "italic" },
    { tag: [tags.standard(tags.variableName), tags.standard(tags.name)], color: "var(--code-builtin)" },
]);

const look = EditorView.theme({
    "&": { height: "100%", color: "var(--text)", backgroundColor: "var(--sheet)", fontSize: "0.875rem" },
    ".cm-content": { caretColor: "var(--text)", fontFamily: "var(--mono)" },
    ".cm-cursor": { borderLeftColor: "var(--text)" },
    "&.cm-focused": { outline: "2px solid var(--focus)", outlineOffset: "-2px" },
    ".cm-gutters": { backgroundColor: "var(--ground)", color: "var(--quiet)", border: "none" },
    ".cm-activeLine, .cm-activeLineGutter": { backgroundColor: "var(--line)" },
    "&.cm-focused > .cm-scroller > .cm-selectionLayer .cm-selectionBackground, .cm-selectionBackground":
        { backgroundColor: "var(--selection)" },
    ".cm-tooltip, .cm-panels": { backgroundColor: "var(--ground)", color: "var(--text)", border: "1px solid var(--edge)" },
    ".cm-tooltip-autocomplete > ul > li[aria-selected]": { backgroundColor: "var(--accent)", color: "var(--on-accent)" },
    ".cm-completionInfo": { whiteSpace: "pre-wrap", maxWidth: "26rem" },
    // In place of pictures in data addresses, which the page's policy refuses.
    ".cm-lintRange-error": { backgroundImage: "none", textDecoration: "underline wavy var(--error)" },
    ".cm-lint-marker-error": { content: '"\u25cf"', color: "var(--error)" },
    ".cm-diagnostic-error": { borderLeftColor: "var(--error)" },
});

// Text over a selection is put in by the editor. Browsers would do it themselves and keep the look of what was there by
// style attributes, which the page's policy refuses with a word on the console.
const typeOverSelection = EditorView.domEventHandlers({
    beforeinput(event, view) {
        const { from, to, empty } = view.state.selection.main;
        if (event.inputType !== "insertText" || !event.data || empty || view.composing) return false;
        const insert = () => view.state.update(view.state.replaceSelection(event.data), { userEvent: "input.type" });
        const isTaken = view.state.facet(EditorView.inputHandler).some((handler) => handler(view, from, to, event.data, insert));
        if (!isTaken) view.dispatch(insert());
        event.preventDefault();
        return true;
    },
});

// Characters of a word before which completion is offered unasked.
const WORD = /[A-Za-z_]\w*/;
const KINDS = { function: "function", method: "method", variable: "variable" };

function completionsOf(entries) {
    const options = entries.map(({ label, kind, detail, info }) => ({ label, type: KINDS[kind], detail, info }));
    return (context) => {
        const word = context.matchBefore(WORD);
        if (word === null && !context.explicit) return null;
        return { from: word?.from ?? context.pos, options, validFor: /^\w*$/ };
    };
}

export class Editor {
    #view;
    #states = new Map(); // by path: text, history and place of each file that was shown
    #path = "";
    #onChange;
    #extensions;

    // parent: an element. entries: of readAnnotations. onChange(path, text) is called after each change by the user;
    // onRun() by Ctrl-Enter.
    constructor(parent, entries, onChange, onRun) {
        const root = parent.attachShadow({ mode: "open" });
        this.#onChange = onChange;
        this.#extensions = (path) => [
            lineNumbers(), highlightActiveLineGutter(), history(), drawSelection(),
            EditorState.allowMultipleSelections.of(true), indentOnInput(), bracketMatching(), closeBrackets(),
            highlightActiveLine(), highlightSelectionMatches(), indentUnit.of("    "), lintGutter(), linter(null), look, typeOverSelection,
            syntaxHighlighting(colours),
            EditorView.contentAttributes.of({ tabindex: "0", "aria-label": `${path}, text. Escape, then Tab leaves it` }),
            ...(isScript(path) ? [
                StreamLanguage.define(lua),
                autocompletion({ override: [completionsOf(entries), completeAnyWord] }),
            ] : []),
            keymap.of([
                { key: "Mod-Enter", run: () => (onRun(), true) },
                ...closeBracketsKeymap, ...defaultKeymap, ...searchKeymap, ...historyKeymap, ...completionKeymap,
                indentWithTab,
            ]),
            EditorView.updateListener.of((update) => this.#changed(update)),
        ];
        this.#view = new EditorView({ parent: root, root });
    }

    #changed(update) {
        if (update.docChanged) this.#onChange(this.#path, update.state.doc.toString());
    }

    // Forgets all files: another game is there.
    clear() {
        this.#states.clear();
        this.#path = "";
    }

    forget(path) {
        this.#states.delete(path);
        if (path === this.#path) this.#path = "";
    }

    // Shows the file, with its history and where the cursor was.
    show(path, text) {
        if (path === this.#path) return;
        if (this.#path !== "") this.#states.set(this.#path, this.#view.state);
        let state = this.#states.get(path);
        if (state === undefined || state.doc.toString() !== text)
            state = EditorState.create({ doc: text, extensions: this.#extensions(path) });
        this.#path = path;
        this.#view.setState(state);
    }

    // Underlines a line, counted from 1, with its message; brings it into sight. null: nothing is underlined.
    mark(fault) {
        const { state } = this.#view;
        if (fault === null) return this.#view.dispatch(setDiagnostics(state, []));
        const line = state.doc.line(Math.min(Math.max(fault.line, 1), state.doc.lines));
        const indent = /^\s*/.exec(line.text)[0].length;
        const from = Math.min(line.from + indent, line.to);
        this.#view.dispatch(setDiagnostics(state, [{ from, to: line.to, severity: "error", message: fault.message }]));
        this.#view.dispatch({ effects: EditorView.scrollIntoView(from, { y: "center" }) });
    }

    goTo(line) {
        const { doc } = this.#view.state;
        const at = doc.line(Math.min(Math.max(line, 1), doc.lines)).from;
        this.#view.dispatch({ selection: { anchor: at }, effects: EditorView.scrollIntoView(at, { y: "center" }) });
        this.#view.focus();
    }

    focus() {
        this.#view.focus();
    }
}
