#!/bin/sh
# The repository speaks for itself: no tracked file and no commit message refers to a paper that a reader does
# not have, or to a path or a host of somebody's machine. Prints what is found and fails.
set -eu
cd "$(dirname "$0")/.."

self=scripts/check-words.sh
words='\bParts? [0-9]+(\.[0-9]+)?\b|\b(the|this|our) spec(ification)?\b|\bspec\.md\b|\bhouse\.md\b|\bissues? #?[0-9]+\b'
places='(^|[^A-Za-z0-9_.])/(work|root|home)/|\bdeb\.debian\.org\b|\b(pypi|npmjs|artifactory)\b'

found=0
# Binary inputs of fuzzers and vectors of bytes are no text: -I passes them by.
if git grep -n -I -i -E "$words" -- . ":!$self"; then
    found=1
fi
if git grep -n -I -E "$places" -- . ":!$self"; then
    found=1
fi
if git log --format='%h %B' | grep -n -i -E "$words"; then
    found=1
fi
exit $found
