/*
 * The trace stream. An object at the top of a method brackets the method in the trace and collects
 * the pieces of messages:
 *
 *     void Scanner::read(const char *name)
 *     {
 *         Trace trace(*Tracer::getInstance(Tracer::COMPONENT_COMMON), "Scanner::read");
 *         trace << "name=" << name << Trace::end;
 *     }
 */
#ifndef OLVEX_TRACE_TRACE_H
#define OLVEX_TRACE_TRACE_H

#include <olvex/trace/Tracer.h>
#include <olvex/trace/base/Object.h>
#include <olvex/trace/base/String.h>

inline namespace olvex_trace {

/**
 * Constructing it writes the method's entry, destroying it the exit; with an empty method name
 * neither. Nothing is formatted unless the tracer took the most detailed level at construction. It
 * belongs to one thread. The tracer is borrowed and must outlive it.
 */
class OVX_API Trace {
  public:
    OVX_TRACE_ALLOCATION

    /** What can be put into the stream to act on it; the value 0 ends the message and sends it. */
    enum Modifier : int { end = 0 };

    /** Copies the method's name. */
    Trace(Tracer &tracer, const char *method);
    /** Copies the method's name, as UTF-8. */
    Trace(Tracer &tracer, const wchar_t *method);
    virtual ~Trace();
    Trace(const Trace &) = delete;
    Trace &operator=(const Trace &) = delete;

    Trace &operator<<(bool value);            /**< "true" or "false" */
    Trace &operator<<(int value);             /**< "%d" */
    Trace &operator<<(unsigned int value);    /**< "%u" */
    Trace &operator<<(long value);            /**< "%ld" */
    Trace &operator<<(unsigned long value);   /**< "%lu" */
    Trace &operator<<(void *value);           /**< "%p" */
    Trace &operator<<(const void *value);     /**< "%p" */
    Trace &operator<<(char value);            /**< "%c" */
    Trace &operator<<(const char *value);     /**< the text, or "(null)" */
    Trace &operator<<(const wchar_t *value);  /**< the text as UTF-8, or "(null)" */
    Trace &operator<<(const String &value);   /**< the text */
    Trace &operator<<(const Object &value);   /**< the object's text */
    Trace &operator<<(const Modifier &value); /**< end sends the message */
    Trace &operator<<(Trace &value);          /**< nothing, for results of hex() and the like */

    /** Sets the place in the source of the next message; `file` is copied. Returns the stream. */
    Trace &pos(const char *file, int line);
    /** Sends the message that was collected, even an empty one, and begins the next. */
    void logMessage();
    /** Sends the method's entry, unless its name is empty, and begins the next message. */
    void logEntry();
    /** Sends the method's exit, unless its name is empty, and begins the next message. */
    void logExit();
    /** Forgets the message that was collected and its place. */
    void resetInfo();

    /**
     * A text made as by printf, borrowed until the next format() or the end of the stream; none
     * when that fails. It is made whether or not anything is traced.
     */
    const char *format(const char *format, ...) OVX_PRINTF_LIKE(2, 3);
    /** A text made as by printf from a va_list, of which `arguments` is the address; yours, freed
        with BaxMemoryFree(); none when that fails. */
    static char *vsprintf(const char *format, void *arguments) OVX_PRINTF_LIKE(1, 0);

    /** Appends a dump of `length` bytes, 16 a line, in hexadecimal and as characters. */
    Trace &hex(const char *data, unsigned length);
    /** Makes the current error of this thread (ErrorManager) with its call stack the message. */
    Trace &dumpError();

  private:
    bool isActive() const { return level_ <= tracerLevel_; }
    Trace &append(const char *format, ...) OVX_PRINTF_LIKE(2, 3);
    void appendHexLine(const char *data, unsigned offset, unsigned count);

    Tracer &tracer_;
    Tracer::Level level_;
    Tracer::Level tracerLevel_;
    String text_;
    String method_;
    String file_;
    int line_;
    char *formatBuffer_;
};

} // namespace olvex_trace

#endif
