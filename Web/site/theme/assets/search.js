// Full text search over the manual's sections. Words are found as parts of words, so that "view_pos" finds
// camera_set_view_pos.

// A section of MkDocs' index, prepared for find().
export function readable(section) {
    const title = plain(section.title), text = plain(section.text);
    return { location: section.location, title, text, lowTitle: title.toLowerCase(), lowText: text.toLowerCase() };
}

function plain(html) {
    return new DOMParser().parseFromString(html, "text/html").body.textContent.replace(/\s+/g, " ");
}

// Larger is better; 0 when a word is missing.
function scoreOf(section, words) {
    let score = 0;
    for (const word of words) {
        const inTitle = section.lowTitle.indexOf(word);
        const inText = section.lowText.indexOf(word);
        if (inTitle < 0 && inText < 0) return 0;
        score += section.lowTitle === word ? 100 : inTitle === 0 ? 30 : inTitle > 0 ? 20 : 0;
        score += inText >= 0 ? 1 + Math.max(0, 3 - inText / 200) : 0;
    }
    return score;
}

function excerptOf(section, words) {
    const at = Math.max(0, ...words.map((word) => section.lowText.indexOf(word)));
    const from = Math.max(0, at - 40);
    return (from > 0 ? "..." : "") + section.text.slice(from, from + 120);
}

// The sections with all words of the query, the best first: { location, title, excerpt }.
export function find(sections, query, most) {
    const words = query.toLowerCase().split(/\s+/).filter((word) => word !== "");
    if (words.length === 0) return [];
    return sections
        .map((section) => ({ section, score: scoreOf(section, words) }))
        .filter((each) => each.score > 0)
        .sort((a, b) => b.score - a.score)
        .slice(0, most)
        .map(({ section }) => ({
            location: section.location, title: section.title, excerpt: excerptOf(section, words),
        }));
}
