// The registry of classes, and the table of those that the toolkit brings along.
#include "OvxClassRegistry.h"

#include <utility>

#include "OvxFFDCTriggerHandler.h"
#include "OvxFileCopyHandler.h"
#include "OvxFileHandler.h"
#include "OvxMavTraceFormatter.h"
#include "OvxMsgIdFilter.h"
#include "OvxPDLogger.h"
#include "OvxPDXMLFormatter.h"
#include "messages/Messages.h"
#include "util/OvxStringGroup.h"
#include "util/OvxStringToObjClassMap.h"

using namespace olvex;

namespace {

constexpr int kFirstCategory = OVX_CLASS_LOGGER;
constexpr int kCategories = OVX_CLASS_FORMATTER - OVX_CLASS_LOGGER + 1;

StringToObjClassMap *classes = nullptr;
StringGroup *classNames[kCategories] = {};

struct BuiltInClass {
    const char *name;
    int category;
    Message description; // kCatalog for none
    ClassSlots slots;
};

constexpr Message kNoDescription = Message::kCatalog;

// One row a class, in the order of registration. What a row leaves out is the category's default.
constexpr BuiltInClass kBuiltInClasses[] = {
    {"ovx_basiclogger",
     OVX_CLASS_LOGGER,
     Message::kDescBasicLogger,
     {.cfgChange = OvxBasicLoggerFCfgChange, .log = OvxBasicObjectFLog}},
    {"ovx_pdlogger",
     OVX_CLASS_LOGGER,
     Message::kDescPdLogger,
     {.allocVars = OvxPDLoggerFAllocVars,
      .freeVars = OvxPDLoggerFFreeVars,
      .cfgChange = OvxPDLoggerFCfgChange,
      .log = OvxPDLoggerFLog}},
    {"ovx_levelfilter",
     OVX_CLASS_FILTER,
     Message::kDescLevelFilter,
     {.cfgChange = OvxLevelFilterFCfgChange,
      .log = OvxBasicObjectFLog,
      .process = OvxBasicFilterFProcess,
      .isLoggable = OvxLevelFilterFIsLoggable}},
    {"ovx_msgidfilter",
     OVX_CLASS_FILTER,
     kNoDescription,
     {.allocVars = OvxMsgIdFilterFAllocVars,
      .freeVars = OvxMsgIdFilterFFreeVars,
      .cfgChange = OvxMsgIdFilterFCfgChange,
      .log = OvxBasicObjectFLog,
      .process = OvxBasicFilterFProcess,
      .isLoggable = OvxMsgIdFilterFIsLoggable}},
    {"ovx_consolehandler",
     OVX_CLASS_HANDLER,
     Message::kDescConsoleHandler,
     {.allocVars = OvxConsoleHandlerFAllocVars,
      .freeVars = OvxConsoleHandlerFFreeVars,
      .cfgChange = OvxBasicHandlerFCfgChange,
      .process = OvxConsoleHandlerFProcess,
      .open = OvxConsoleHandlerFOpen,
      .close = OvxConsoleHandlerFClose}},
    {"ovx_stderrhandler",
     OVX_CLASS_HANDLER,
     kNoDescription,
     {.allocVars = OvxConsoleHandlerFAllocVars,
      .freeVars = OvxConsoleHandlerFFreeVars,
      .cfgChange = OvxBasicHandlerFCfgChange,
      .process = OvxStderrHandlerFProcess,
      .open = OvxConsoleHandlerFOpen,
      .close = OvxConsoleHandlerFClose}},
    {"ovx_filehandler",
     OVX_CLASS_HANDLER,
     Message::kDescFileHandler,
     {.allocVars = OvxFileHandlerFAllocVars,
      .freeVars = OvxFileHandlerFFreeVars,
      .cfgChange = OvxFileHandlerFCfgChange,
      .process = OvxFileHandlerFProcess,
      .open = OvxFileHandlerFOpen,
      .close = OvxFileHandlerFClose}},
    {"ovx_multiproc_filehandler",
     OVX_CLASS_HANDLER,
     kNoDescription,
     {.allocVars = OvxFileHandlerFAllocVars,
      .freeVars = OvxFileHandlerFFreeVars,
      .cfgChange = OvxFileHandlerFCfgChange,
      .process = OvxMultiProcFileHandlerFProcess,
      .open = OvxMultiProcFileHandlerFOpen,
      .close = OvxMultiProcFileHandlerFClose}},
    {"ovx_basicformatter",
     OVX_CLASS_FORMATTER,
     Message::kDescBasicFormatter,
     {.cfgChange = OvxBasicFormatterFCfgChange,
      .format = OvxBasicFormatterFFormat,
      .getHeader = OvxBasicFormatterFGetHeader,
      .getTrailer = OvxBasicFormatterFGetTrailer,
      .bindMsg = ovxIntlBindI18Msg}},
    {"ovx_xmlformatter",
     OVX_CLASS_FORMATTER,
     Message::kDescXmlFormatter,
     {.allocVars = OvxPDXMLFormatterFAllocVars,
      .freeVars = OvxPDXMLFormatterFFreeVars,
      .cfgChange = OvxPDXMLFormatterFCfgChange,
      .format = OvxPDXMLFormatterFFormat,
      .getHeader = OvxPDXMLFormatterFGetHeader,
      .getTrailer = OvxPDXMLFormatterFGetTrailer,
      .bindMsg = ovxIntlBindI18Msg}},
    {"ovx_mavtraceformatter",
     OVX_CLASS_FORMATTER,
     kNoDescription,
     {.format = OvxMavTraceFormatterFFormat, .bindMsg = ovxIntlBindI18Msg}},
    {"ovx_ffdc_trigger_handler",
     OVX_CLASS_HANDLER,
     Message::kDescTriggerHandler,
     {.allocVars = OvxFFDCTriggerHandlerFAllocVars,
      .freeVars = OvxFFDCTriggerHandlerFFreeVars,
      .cfgChange = OvxFFDCTriggerHandlerFCfgChange,
      .open = OvxFFDCTriggerHandlerFOpen,
      .close = OvxFFDCTriggerHandlerFClose}},
    {"ovx_ffdc_filecopy_handler",
     OVX_CLASS_HANDLER,
     Message::kDescFileCopyHandler,
     {.allocVars = OvxFileCopyHandlerFAllocVars,
      .freeVars = OvxFileCopyHandlerFFreeVars,
      .cfgChange = OvxFileCopyHandlerFCfgChange,
      .process = OvxFileCopyHandlerFProcess,
      .open = OvxFFDCTriggerHandlerFOpen,
      .close = OvxFFDCTriggerHandlerFClose}},
};

void addBuiltInClass(const BuiltInClass &row)
{
    OvxI18Msg *description = nullptr;
    if (row.description != kNoDescription)
        description = ovxIntlAllocI18Msg(textOf(Message::kCatalog), kMessageSet,
                                         keyOf(row.description), textOf(row.description));
    ovxIntlAddClass(row.name, row.category, description, row.slots);
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
