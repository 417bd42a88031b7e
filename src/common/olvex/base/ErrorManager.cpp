// The current error of each thread, in the thread's own memory. No locks.
#include <olvex/trace/base/ErrorManager.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <execinfo.h>

namespace {

constexpr int kMaxCalls = 64;

struct CurrentError {
    bool isSet;
    long code;
    int line;
    char file[256];
    int calls;
    void *stack[kMaxCalls];
};

thread_local CurrentError current;

// The lines of the call stack, freed at the end.
class StackText {
  public:
    StackText()
        : lines_(current.calls > 0 ? backtrace_symbols(current.stack, current.calls) : nullptr)
    {}
    ~StackText() { std::free(lines_); }
    StackText(const StackText &) = delete;
    StackText &operator=(const StackText &) = delete;

    // The bytes of all lines with their line ends and the terminator; 0 for no lines.
    long size() const
    {
        std::size_t size = 1;
        for (int i = 0; lines_ && i < current.calls; ++i)
            size += std::strlen(lines_[i]) + 1;
        return lines_ ? static_cast<long>(size) : 0;
    }

    // Copies what fits into `size` bytes and terminates it.
    void copyTo(char *buffer, std::size_t size) const
    {
        std::size_t used = 0;
        for (int i = 0; lines_ && i < current.calls; ++i) {
            used = add(buffer, size, used, lines_[i]);
            used = add(buffer, size, used, "\n");
        }
        buffer[used] = '\0';
    }

  private:
    static std::size_t add(char *buffer, std::size_t size, std::size_t used, const char *text)
    {
        const std::size_t room = size - used - 1;
        const std::size_t length = strnlen(text, room);
        std::memcpy(buffer + used, text, length);
        return used + length;
    }

    char **lines_;
};

} // namespace

// Not inlined, so that the first call of the stack, which is left out, is this one. What caused the
// error may still have to be read from errno.
[[gnu::noinline]] void ErrorManager::setError(long code, const char *file, int line)
{
    const int systemError = errno;
    void *stack[kMaxCalls + 1];
    const int calls = backtrace(stack, kMaxCalls + 1) - 1;
    errno = systemError;
    clear();
    current.isSet = true;
    current.code = code;
    current.line = line;
    if (file) std::strncpy(current.file, file, sizeof current.file - 1);
    if (calls <= 0) return;
    current.calls = calls;
    std::memcpy(current.stack, stack + 1, static_cast<std::size_t>(calls) * sizeof *stack);
}

void ErrorManager::clear()
{
    current = CurrentError();
}

void ErrorManager::getStackDump(char *buffer, long *size)
{
    if (!size) return;
    const StackText text;
    if (!buffer)
        *size = text.size();
    else if (*size > 0)
        text.copyTo(buffer, static_cast<std::size_t>(*size));
}

void ErrorManager::getError(long *code)
{
    if (code) *code = current.code;
}

void ErrorManager::getFile(const char **file)
{
    if (file) *file = current.isSet ? current.file : nullptr;
}

void ErrorManager::getLine(int *line)
{
    if (line) *line = current.line;
}
