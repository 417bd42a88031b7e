// See CatalogSearch.h.
#include "ucv/catalogs/CatalogSearch.h"

#include <olvex/Ucv.h>

#include "ucv/InstalledFiles.h"
#include "ucv/catalogs/CatalogPath.h"
#include "util/CxProcess.h"
#include "util/EnvironmentWatch.h"
#include "util/Memory.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>
#include <sys/stat.h>

namespace olvex::ucv {

namespace {

using std::string_view;

constexpr char kDefaultPath[] = "%N.cat";
constexpr char kInstalledTemplate[] = "/catalog/%L/%N.cat";

bool isFound(const char *path)
{
    struct stat status;
    return isCached(path) || stat(path, &status) == 0;
}

// The last candidates of the search that runs. Paths are too long for a small stack.
CatalogPath candidate, candidateBefore;

// What one search is for.
struct Search {
    const char *name;
    CatalogLocales locales;

    // Whether a template leads to a file for one of the locales, the candidate then. A path that
    // is the same for two locales is looked up once.
    bool findElement(string_view directory, string_view pattern)
    {
        candidateBefore.clear();
        for (const string_view locale : locales) {
            if (!candidate.fill(directory, pattern, name, locale) || candidate == candidateBefore)
                continue;
            if (isFound(candidate.text())) return true;
            candidateBefore = candidate;
        }
        return false;
    }

    bool findAlong(string_view searchPath)
    {
        while (!searchPath.empty()) {
            const string_view element = takeElement(searchPath);
            if (!element.empty() && findElement("", element)) return true;
        }
        return false;
    }

    bool findInstalled()
    {
        const char *directory = installedDirectory();
        return *directory && findElement(directory, kInstalledTemplate);
    }
};

const char *firstSet(std::initializer_list<const char *> variables)
{
    for (const char *variable : variables)
        if (const char *value = std::getenv(variable); value && *value) return value;
    return nullptr;
}

// Puts the environment's locale into the buffer.
void takeLocale(int flags, char *buffer, std::size_t size)
{
    const char *locale = flags & UCV_CAT_MESSAGES ? firstSet({"LC_ALL", "LC_MESSAGES"}) : nullptr;
    if (locale)
        std::snprintf(buffer, size, "%s", locale);
    else
        ucv_os_lang_name(buffer, size);
}

// NLSPATH, or what stands for it; nothing when that would be a directory that is not trusted.
const char *searchPath()
{
    const char *path = ucv_get_nlspath();
    return *path || cxIsPrivileged() ? path : kDefaultPath;
}

// What a search for a binding has found, null for none.
struct Finding {
    char *name; // null in a free place
    char *locale;
    ucv_cat_t *catalog;
    std::int64_t until;

    bool isFor(const char *otherName, const char *otherLocale) const
    {
        return name && std::strcmp(name, otherName) == 0 &&
               (locale && otherLocale ? std::strcmp(locale, otherLocale) == 0
                                      : locale == otherLocale);
    }

    void clear()
    {
        BaxMemoryFree(name);
        BaxMemoryFree(locale);
        *this = {};
    }
};

constexpr std::size_t kFindings = 16;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
// Under 100 ms whatever the coarse clock's step.
constexpr std::int64_t kRemembered = 80'000'000;

// The findings hold as long as the environment and the cache are as they were.
Finding findings[kFindings] = {};
std::size_t nextFinding = 0;
unsigned long findingsGeneration = 0;
EnvironmentWatch findingsEnvironment("NLSPATH=", "LANG=");

std::int64_t coarseNow()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * kNanosecondsPerSecond + now.tv_nsec;
}

bool stillHold()
{
    return findingsGeneration == cacheGeneration() && findingsEnvironment.isUnchanged();
}

Finding *recall(const char *name, const char *locale)
{
    for (Finding &finding : findings)
        if (finding.isFor(name, locale)) return &finding;
    return nullptr;
}

void clearFindings()
{
    for (Finding &finding : findings)
        finding.clear();
}

// Searches, and remembers what was found in the place of what was found before.
[[gnu::cold, gnu::noinline]] ucv_cat_t *searchAgain(const char *name, const char *locale)
{
    ucv_cat_t *catalog = searchCatalog(name, 0, locale, Borrower::kToolkit);
    if (!stillHold()) {
        clearFindings();
        findingsEnvironment.take();
        findingsGeneration = cacheGeneration();
    }
    Finding *finding = recall(name, locale);
    if (!finding) finding = &findings[nextFinding++ % kFindings];
    finding->clear();
    *finding = {Memory().duplicate(name), Memory().duplicate(locale), catalog,
                coarseNow() + kRemembered};
    if (locale && !finding->locale) finding->clear();
    return catalog;
}

} // namespace

ucv_cat_t *searchCatalog(const char *name, int flags, const char *locale, Borrower borrower)
{
    if (!name || !*name) return nullptr;
    if (std::strpbrk(name, "/\\"))
        return isFound(name) ? openCached(name, flags, borrower) : nullptr;
    char ownLocale[CatalogLocales::kSize];
    if (!locale) {
        takeLocale(flags, ownLocale, sizeof ownLocale);
        locale = ownLocale;
    }
    Search search = {name, CatalogLocales(flags, locale)};
    if (search.findAlong(searchPath()) || search.findInstalled())
        return openCached(candidate.text(), flags, borrower);
    return nullptr;
}

ucv_cat_t *catalogForBinding(const char *name, const char *locale)
{
    const Finding *finding = stillHold() ? recall(name, locale) : nullptr;
    if (finding && coarseNow() < finding->until) return finding->catalog;
    return searchAgain(name, locale);
}

void forgetSearches()
{
    clearFindings();
    findingsEnvironment.forget();
}

} // namespace olvex::ucv
