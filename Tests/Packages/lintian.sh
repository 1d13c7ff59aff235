#!/usr/bin/env bash
# Lintian's remarks are those that stand in lintian.txt, which speak of the licence that has not been chosen.
#
#   lintian.sh FOLDER...      with packages
source "$(dirname "$0")/common.sh"

remarks=$(for folder in "$@"; do lintian --fail-on none --allow-root --tag-display-limit 0 "$folder"/*.deb; done |
    sort -u) || fail "lintian failed: $remarks"
diff -u "$(dirname "$0")/lintian.txt" <(printf '%s\n' "$remarks") >&2 || fail "lintian remarks otherwise, see above"
