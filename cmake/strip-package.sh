#!/bin/sh
# Strips an installed program as Debian's packaging does: the symbols, and the compiler's notes
# (.comment, .note) that nothing reads at run time.
exec strip --remove-section=.comment --remove-section=.note "$@"
