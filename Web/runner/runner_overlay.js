// The inspector's lines and words over the game's picture, on a canvas of their own.

const NUMBERS = 5; // of a line: kind, from x, y, to x, y

// The game's picture as it stands in the canvas: the largest of its shape, in the middle.
function placeOf(screen, canvas) {
    const scale = Math.min(canvas.width / screen.width, canvas.height / screen.height);
    return { scale, x: (canvas.width - screen.width * scale) / 2, y: (canvas.height - screen.height * scale) / 2 };
}

export class OverlayPainter {
    constructor(program, canvas) {
        this.program = program;
        this.canvas = canvas;
        this.context = canvas.getContext("2d");
        this.styles = program.json("styles") ?? [];
    }

    clear() {
        this.context.setTransform(1, 0, 0, 1, 0, 0);
        this.context.clearRect(0, 0, this.canvas.width, this.canvas.height);
    }

    paint(size, screen) {
        if (this.canvas.width !== size.width) this.canvas.width = size.width;
        if (this.canvas.height !== size.height) this.canvas.height = size.height;
        this.clear();
        const place = placeOf(screen, this.canvas);
        for (const view of this.program.json("overlays") ?? []) this.paintView(view, place);
    }

    paintView(view, place) {
        const { context } = this;
        context.setTransform(place.scale, 0, 0, place.scale, place.x, place.y);
        context.save();
        context.beginPath();
        context.rect(view.x, view.y, view.width, view.height);
        context.clip();
        for (let kind = 0; kind < this.styles.length; ++kind) this.paintLines(view.lines, kind, place.scale);
        for (const text of view.texts) this.paintText(text, place.scale);
        context.restore();
    }

    paintLines(lines, kind, scale) {
        const { context } = this;
        context.beginPath();
        for (let i = 0; i < lines.length; i += NUMBERS) {
            if (lines[i] !== kind) continue;
            context.moveTo(lines[i + 1], lines[i + 2]);
            context.lineTo(lines[i + 3], lines[i + 4]);
        }
        context.strokeStyle = this.styles[kind].colour;
        context.lineWidth = this.styles[kind].width / scale;
        context.stroke();
    }

    paintText(text, scale) {
        const { context } = this;
        const height = 12 / scale;
        context.font = `${height}px ui-monospace, monospace`;
        context.textBaseline = "top";
        const width = context.measureText(text.text).width;
        context.fillStyle = "rgba(0, 0, 0, 0.65)";
        context.fillRect(text.x - 2 / scale, text.y - 1 / scale, width + 4 / scale, height + 3 / scale);
        context.fillStyle = text.kind < 0 ? "#ffffff" : this.styles[text.kind].colour;
        context.fillText(text.text, text.x, text.y);
    }
}
