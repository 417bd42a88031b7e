// See Explain.h: classes.
#include "config/Explain.h"

namespace tools::config {

namespace {

std::string titleOf(const ClassInfo &info)
{
    return std::string(info.name) + ", a " + nameOf(info.category);
}

void printProperty(FILE *stream, const Property &property)
{
    const std::string values = valuesOf(property);
    std::fprintf(stream, "    %s (%s)\n        %s", property.name, nameOf(property.type),
                 property.help);
    if (!values.empty()) std::fprintf(stream, " Takes %s.", values.c_str());
    if (*property.initial) std::fprintf(stream, " Default: %s.", property.initial);
    std::fputc('\n', stream);
}

void printClass(FILE *stream, const ClassInfo &info)
{
    std::fprintf(stream, "%s\n  %s\n", titleOf(info).c_str(), info.help);
    for (const Property *property : info.all())
        printProperty(stream, *property);
}

void printRow(FILE *stream, const Property &property)
{
    const std::string values = valuesOf(property);
    const char *mark = *property.initial ? "`" : "";
    std::fprintf(stream, "| `%s` | %s | %s%s%s | %s |\n", property.name,
                 values.empty() ? nameOf(property.type) : values.c_str(), mark, property.initial,
                 mark, property.help);
}

void printSection(FILE *stream, const ClassInfo &info)
{
    std::fprintf(stream,
                 "### `%s`\n\nA %s. %s\n\n| Property | Value | Default | Meaning |\n"
                 "|---|---|---|---|\n",
                 info.name, nameOf(info.category), info.help);
    for (const Property *property : info.all())
        printRow(stream, *property);
}

void printEach(FILE *stream, const std::string &name, void (*print)(FILE *, const ClassInfo &))
{
    bool isFirst = true;
    for (const ClassInfo &info : classes()) {
        if (!name.empty() && name != info.name) continue;
        if (!isFirst) std::fputc('\n', stream);
        isFirst = false;
        print(stream, info);
    }
}

} // namespace

void printClasses(FILE *stream, const std::string &name)
{
    printEach(stream, name, printClass);
}

void printMarkdown(FILE *stream, const std::string &name)
{
    printEach(stream, name, printSection);
}

} // namespace tools::config
