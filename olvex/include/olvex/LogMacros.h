/*
 * Logging calls that need no markers, no closing 0 and no place in the source, for C11 and C++17:
 *
 *     OVX_LOG_WARN(log, "Disk %1$s is %2$d percent full", path, 93);
 *
 * A macro evaluates its logger once, and its other arguments only when the logger takes the level.
 * Arguments are bool, char, integers up to a long, float, double, strings and void pointers; one of
 * another type does not compile. Integers without a sign that are as wide as a long go as its bits,
 * which "%lu" and "%lx" print right. A null string prints "(null)". Each macro but OVX_LOG_TEXT
 * records file, line and function. A message takes 59 arguments, since its place takes 3 of the 62
 * entries of a list; more do not compile. In C++ the text must be a literal and is checked against
 * the arguments.
 *
 * Define OVX_LOG_NO_PLACES before including this header to leave the place out of messages.
 */
#ifndef OLVEX_LOGMACROS_H
#define OLVEX_LOGMACROS_H

#include <olvex/Log.h>

#include <olvex/front/MacroCalls.h>

/** Logs a message at OVX_LEVEL_INFO: logger, text, arguments. */
#define OVX_LOG_INFO(logger, ...) OVX_LOG_MESSAGE(INFO, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs a message at OVX_LEVEL_WARN: logger, text, arguments. */
#define OVX_LOG_WARN(logger, ...) OVX_LOG_MESSAGE(WARN, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs a message at OVX_LEVEL_ERROR: logger, text, arguments. */
#define OVX_LOG_ERROR(logger, ...) OVX_LOG_MESSAGE(ERROR, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs a message at OVX_LEVEL_FATAL: logger, text, arguments. */
#define OVX_LOG_FATAL(logger, ...) OVX_LOG_MESSAGE(FATAL, logger, NULL, 0, 0, __VA_ARGS__)
/** Logs debugging text at OVX_LEVEL_DEBUG_MIN: logger, text, arguments. */
#define OVX_LOG_DEBUG_MIN(logger, ...) OVX_DEBUG_CALL(Min, MIN, logger, __VA_ARGS__)
/** Logs debugging text at OVX_LEVEL_DEBUG_MID: logger, text, arguments. */
#define OVX_LOG_DEBUG_MID(logger, ...) OVX_DEBUG_CALL(Mid, MID, logger, __VA_ARGS__)
/** Logs debugging text at OVX_LEVEL_DEBUG_MAX: logger, text, arguments. */
#define OVX_LOG_DEBUG_MAX(logger, ...) OVX_DEBUG_CALL(Max, MAX, logger, __VA_ARGS__)

/**
 * Logs a message that has translations: LEVEL is INFO, WARN, ERROR or FATAL; then logger, catalog,
 * set, key, text, arguments.
 */
#define OVX_LOG_MESSAGE(LEVEL, logger, catalog, set, key, ...)                                     \
    OVX_MESSAGE_CALL(OVX_LEVEL_##LEVEL, OVX_CALL_##LEVEL, logger, catalog, set, key, __VA_ARGS__)
/**
 * Logs a message with properties of the event: LEVEL, logger, the properties in parentheses, each
 * of them an OVX_NAMED(), at least one, then text and arguments.
 */
#define OVX_LOG_WITH(LEVEL, logger, properties, ...)                                               \
    OVX_WITH_CALL(OVX_LEVEL_##LEVEL, OVX_CALL_##LEVEL, logger, properties, __VA_ARGS__)
/** A property of an event, for OVX_LOG_WITH(). */
#define OVX_NAMED(name, value) OVX_NAMED_ENTRY(name, value)
/** Logs plain text without level and place: logger, text, arguments. */
#define OVX_LOG_TEXT(logger, ...) OVX_TEXT_CALL(logger, __VA_ARGS__)

#endif
