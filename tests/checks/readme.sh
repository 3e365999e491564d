#!/usr/bin/env bash
# The README's first program is the one in examples/first, and prints what the README says.
# Usage: readme.sh TOP_OF_TREE FIRST_EXAMPLE
set -euo pipefail
cd "$1"
block() { awk -v want="$1" '/^```/ { if (inside) { inside = 0; if (seen == want) exit } else { inside = 1; ++seen; next } }
                            inside && seen == want' README.md; }
diff <(block 2) examples/first/main.cpp
diff <(block 3) <("$2" 2>&1)
