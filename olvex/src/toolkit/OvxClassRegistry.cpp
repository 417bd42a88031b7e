// The registry of classes, and the table of those that the toolkit brings along.
#include "toolkit/OvxClassRegistry.h"

#include <utility>

#include "messages/Messages.h"
#include "schema/Property.h"
#include "toolkit/OvxObject.h"
#include "toolkit/collections/OvxStringToObjClassMap.h"
#include "util/collections/OvxStringGroup.h"

using namespace olvex;

namespace {

constexpr int kFirstCategory = OVX_CLASS_LOGGER;
constexpr int kCategories = OVX_CLASS_FORMATTER - OVX_CLASS_LOGGER + 1;

StringToObjClassMap *classes = nullptr;
StringGroup *classNames[kCategories] = {};

struct BuiltInClass {
    const char *name;
    schema::Category category;
    Message description; // kNoDescription for none
    const ClassSlots *slots;
};

constexpr Message kNoDescription = Message::kCatalog;

constexpr BuiltInClass kBuiltInClasses[] = {
#define OVX_CLASS(name, category, description, ...)                                                \
    {#name, schema::Category::category, Message::description, &slots::name},
#include "schema/classes.def"
#undef OVX_CLASS
};

constexpr int categoryOf(const BuiltInClass &row)
{
    return kFirstCategory + static_cast<int>(row.category) -
           static_cast<int>(schema::Category::Logger);
}

void addBuiltInClass(const BuiltInClass &row)
{
    OvxI18Msg *description = nullptr;
    if (row.description != kNoDescription)
        description = ovxIntlAllocI18Msg(textOf(Message::kCatalog), kMessageSet,
                                         keyOf(row.description), textOf(row.description));
    ovxIntlAddClass(row.name, categoryOf(row), description, *row.slots);
    ovxIntlFreeI18Msg(description);
}

StringGroup *namesOf(int category)
{
    const int index = category - kFirstCategory;
    return index >= 0 && index < kCategories ? classNames[index] : nullptr;
}

} // namespace

// The registry stands before the first class is added, so that adding one does not come back here.
void ovxToolkitInitObjClasses()
{
    if (classes) return;
    classes = ovxIntlAllocStringToObjClassMap();
    if (!classes) return printToStderr(Message::kInitFailed, nullptr);
    for (StringGroup *&names : classNames)
        names = ovxIntlAllocStringGroup();
    for (const BuiltInClass &row : kBuiltInClasses)
        addBuiltInClass(row);
}

void ovxToolkitAddClassDef(const char *name, OvxObjClass *cls)
{
    if (!cls) return;
    ovxToolkitInitObjClasses();
    if (!ovxIntlStringToObjClassMapPut(classes, name, cls)) return ovxFreeObjClass(cls);
    ovxIntlStringGroupAdd(namesOf(cls->category), name);
}

OvxObjClass *ovxToolkitGetClassDef(const char *name)
{
    return ovxIntlStringToObjClassMapGet(classes, name);
}

StringGroupNode *ovxToolkitFetchClassnames(int category)
{
    return ovxIntlStringGroupIterator(namesOf(category));
}

void ovxFreeObjClasses()
{
    for (const auto *node = classes ? classes->first() : nullptr; node; node = node->next())
        ovxFreeObjClass(node->value());
    ovxIntlFreeStringToObjClassMap(std::exchange(classes, nullptr));
    for (StringGroup *&names : classNames)
        ovxIntlFreeStringGroup(std::exchange(names, nullptr));
}
