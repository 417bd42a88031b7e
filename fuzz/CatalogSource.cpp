// The catalog compiler: a source that is accepted gives a catalog that is printed back as a source
// of the same messages.
#include <stdexcept>

#include "Input.h"
#include "catalog/CatalogFile.h"
#include "catalog/Check.h"
#include "catalog/Source.h"

namespace {

bool areEqual(const tools::catalog::Messages &a, const tools::catalog::Messages &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto &one, const auto &other) {
                          return one.first == other.first && one.second.text == other.second.text;
                      });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(fuzz::Input(data, size).rest());
    const tools::catalog::Source source = tools::catalog::parseSource("fuzz.msg", text);
    tools::catalog::checkTranslation(source, source, false);
    if (!source.problems.empty() || source.messages.empty()) return 0;
    const auto messages = tools::catalog::readCatalog(tools::catalog::makeCatalog(source.messages));
    if (!areEqual(messages, source.messages)) __builtin_trap();
    const auto again =
        tools::catalog::parseSource("again.msg", tools::catalog::writeSource(messages));
    if (!again.problems.empty() || !areEqual(messages, again.messages)) __builtin_trap();
    return 0;
}
