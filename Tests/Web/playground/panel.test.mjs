import assert from "node:assert/strict";
import { test } from "node:test";
import { roundedOf } from "../../../Web/playground/panel_view.js";

test("a 32-bit float is shown with the fewest digits that stand for it", () => {
    assert.equal(roundedOf(Math.fround(0.1)), 0.1);
    assert.equal(roundedOf(Math.fround(-1 / 3)), -0.33333334);
    assert.equal(roundedOf(16777216), 16777216);
    assert.equal(roundedOf(0), 0);
    assert.equal(roundedOf(Infinity), Infinity);
    assert.ok(Number.isNaN(roundedOf(NaN)));
    assert.equal(Math.fround(roundedOf(Math.fround(123456.789))), Math.fround(123456.789));
});
