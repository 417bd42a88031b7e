// The trace stream: collects messages and hands them to its tracer. One thread, no locks. Nothing
// is formatted while the tracer does not take the stream's level.
#include <olvex/trace/Trace.h>

#include <olvex/trace/base/ErrorManager.h>

#include <cstdarg>
#include <cstdio>

namespace {

constexpr unsigned kHexBytesPerLine = 16;

// The character column shows bytes up to 'z'.
char shown(char byte)
{
    const auto value = static_cast<signed char>(byte);
    return value >= 32 && value <= 122 ? byte : '.';
}

// Writes the byte as two digits and a blank; returns the place behind them.
char *putHex(char *target, char byte)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    *target++ = kDigits[value >> 4];
    *target++ = kDigits[value & 15];
    *target++ = ' ';
    return target;
}

// A text made as by printf, yours.
OVX_PRINTF_LIKE(1, 2) char *makeText(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    char *text = Trace::vsprintf(format, &arguments);
    va_end(arguments);
    return text;
}

// The call stack of the current error, yours; none when there is none.
char *makeStackText()
{
    long size = 0;
    ErrorManager::getStackDump(nullptr, &size);
    if (size <= 0) return nullptr;
    char *stack = static_cast<char *>(BaxMemoryMalloc(static_cast<std::size_t>(size)));
    if (!stack) return nullptr;
    *stack = '\0';
    ErrorManager::getStackDump(stack, &size);
    return stack;
}

} // namespace

Trace::Trace(Tracer &tracer, const char *method)
    : tracer_(tracer),
      level_(Tracer::LEVEL_INFO),
      tracerLevel_(tracer.getLevel()),
      method_(method),
      line_(0),
      formatBuffer_(nullptr)
{
    logEntry();
}

Trace::Trace(Tracer &tracer, const wchar_t *method) : Trace(tracer, String(method)) {}

Trace::~Trace()
{
    logExit();
    BaxMemoryFree(formatBuffer_);
}

Trace &Trace::operator<<(bool value)
{
    return *this << (value ? "true" : "false");
}

Trace &Trace::operator<<(int value)
{
    return append("%d", value);
}

Trace &Trace::operator<<(unsigned int value)
{
    return append("%u", value);
}

Trace &Trace::operator<<(long value)
{
    return append("%ld", value);
}

Trace &Trace::operator<<(unsigned long value)
{
    return append("%lu", value);
}

Trace &Trace::operator<<(void *value)
{
    return append("%p", value);
}

Trace &Trace::operator<<(const void *value)
{
    return append("%p", value);
}

Trace &Trace::operator<<(char value)
{
    return append("%c", value);
}

Trace &Trace::operator<<(const char *value)
{
    if (isActive()) text_.concat(value ? value : "(null)");
    return *this;
}

Trace &Trace::operator<<(const wchar_t *value)
{
    if (isActive()) text_.concat(value ? value : L"(null)");
    return *this;
}

Trace &Trace::operator<<(const String &value)
{
    if (isActive()) text_.concat(value);
    return *this;
}

Trace &Trace::operator<<(const Object &value)
{
    if (isActive()) text_.concat(value.toString());
    return *this;
}

Trace &Trace::operator<<(const Modifier &value)
{
    if (value == end) logMessage();
    return *this;
}

Trace &Trace::operator<<(Trace &)
{
    return *this;
}

// Appends what is never longer than a number or the start of a dump.
Trace &Trace::append(const char *format, ...)
{
    if (!isActive()) return *this;
    char text[64];
    va_list arguments;
    va_start(arguments, format);
    if (std::vsnprintf(text, sizeof text, format, arguments) > 0) text_.concat(text);
    va_end(arguments);
    return *this;
}

Trace &Trace::pos(const char *file, int line)
{
    file_.assign(file);
    line_ = line;
    return *this;
}

void Trace::logMessage()
{
    tracer_.logMessage(level_, file_, line_, method_, text_);
    resetInfo();
}

void Trace::logEntry()
{
    if (method_.length() > 0) tracer_.logEntry(level_, file_, line_, method_, text_);
    resetInfo();
}

void Trace::logExit()
{
    if (method_.length() > 0) tracer_.logExit(level_, file_, line_, method_, text_);
    resetInfo();
}

void Trace::resetInfo()
{
    text_.assign("");
    file_.assign("");
    line_ = 0;
    level_ = Tracer::LEVEL_INFO;
}

// The old buffer is freed last: it may be an argument.
const char *Trace::format(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    char *text = vsprintf(format, &arguments);
    va_end(arguments);
    BaxMemoryFree(formatBuffer_);
    formatBuffer_ = text;
    return text;
}

char *Trace::vsprintf(const char *format, void *arguments)
{
    if (!format || !arguments) return nullptr;
    va_list twice;
    va_copy(twice, *static_cast<va_list *>(arguments));
    const int length = std::vsnprintf(nullptr, 0, format, twice);
    va_end(twice);
    if (length < 0) return nullptr;
    const std::size_t size = static_cast<std::size_t>(length) + 1;
    char *text = static_cast<char *>(BaxMemoryMalloc(size));
    if (text) std::vsnprintf(text, size, format, *static_cast<va_list *>(arguments));
    return text;
}

Trace &Trace::hex(const char *data, unsigned length)
{
    if (!isActive() || !data || length == 0) return *this;
    append("\n-START DATA-: %d (0x%x) bytes-\n", static_cast<int>(length), length);
    unsigned offset = 0;
    for (; length - offset > kHexBytesPerLine; offset += kHexBytesPerLine)
        appendHexLine(data, offset, kHexBytesPerLine);
    appendHexLine(data, offset, length - offset);
    text_.concat("-END DATA-");
    return *this;
}

// Offset, the bytes in hexadecimal, blanks for those that a last line lacks, the characters.
void Trace::appendHexLine(const char *data, unsigned offset, unsigned count)
{
    char line[96];
    char *target = line + std::snprintf(line, sizeof line, "%08x: ", offset);
    for (unsigned i = 0; i < count; ++i)
        target = putHex(target, data[offset + i]);
    for (unsigned i = 3 * count; i < 3 * kHexBytesPerLine; ++i)
        *target++ = ' ';
    for (unsigned i = 0; i < count; ++i)
        *target++ = shown(data[offset + i]);
    *target++ = '\n';
    *target = '\0';
    text_.concat(line);
}

Trace &Trace::dumpError()
{
    if (!isActive()) return *this;
    char *stack = makeStackText();
    long code = 0;
    const char *file = nullptr;
    int line = 0;
    ErrorManager::getError(&code);
    ErrorManager::getFile(&file);
    ErrorManager::getLine(&line);
    char *dump = makeText("\n\n----[ STACK DUMP ]----\nError: %d  File: %s  Line: %d\n"
                          "----< call stack >----\n%s",
                          static_cast<int>(code), file ? file : "", line, stack ? stack : "");
    if (dump) text_.assign(dump);
    BaxMemoryFree(dump);
    BaxMemoryFree(stack);
    return *this;
}
