#!/usr/bin/env bash
# Writes the golden traces and pictures anew, from the dev build. Look at the pictures before they are kept.
source "$(dirname "$0")/steps.sh"

build dev
step "Writing Tests/Golden"
GOLDEN_UPDATE=1 quietly build/golden.log build/dev/Tests/runner_tests --gtest_filter='*Golden*'
git status --short Tests/Golden
