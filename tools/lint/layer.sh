# shellcheck shell=bash
# The layers of the sources, lowest first; sourced by the checks. Formatters and handlers meet the
# toolkit through the records that olvex/src/schema/classes.def lists.
#
# util and ucv are one layer, since a string buffer converts what is put into it. Toolkit, logging and
# messages are one layer, since loggers are objects of the toolkit, which reports through a logger.
layer_of() {
    case $1 in
    olvex/src/schema/*) echo 0 ;; # includes nothing else, so that programs may include it
    olvex/src/util/shapes/* | olvex/src/util/Memory.h | olvex/src/util/Locked.h) echo 1 ;;
    olvex/src/util/* | olvex/src/ucv/*) echo 2 ;;
    olvex/src/toolkit/* | olvex/src/logging/* | olvex/src/messages/*) echo 3 ;;
    olvex/src/handlers/* | olvex/src/formatters/*) echo 4 ;;
    src/*) echo 5 ;; # the tracing front end
    olvex/src/*) echo "-1" ;;
    *) echo 6 ;; # programs
    esac
}
