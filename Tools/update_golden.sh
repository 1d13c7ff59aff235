#!/usr/bin/env bash
# Replaces the golden traces and pictures by what the dev build makes now. Look at the pictures before you commit them.
source "$(dirname "$0")/steps.sh"

build dev
step "Writing Tests/Golden"
GOLDEN_UPDATE=1 quietly build/golden.log build/dev/Tests/runner_tests --gtest_filter='*Golden*'
git status --short Tests/Golden
