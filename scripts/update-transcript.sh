#!/usr/bin/env bash
# Plays the tour and writes its transcript where the test and the README have it. For the author of a change
# that is meant to be seen in it.
set -euo pipefail
cd "$(dirname "$0")/.."

transcript=tests/service/tour_transcript.txt
./run --tour | sed -E '1s/^Domain id [0-9]+/Domain id 7/' >"$transcript"

awk -v transcript="$transcript" '
    # The first fenced block of the README is the transcript.
    /^```$/ && state < 2 {
        state++
        print
        while (state == 1 && (getline line <transcript) > 0) print line
        next
    }
    state != 1
' README.md >README.md.new
mv README.md.new README.md
