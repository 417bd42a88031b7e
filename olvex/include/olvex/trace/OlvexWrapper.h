/* Tracing with one shared object for each component, which forwards to the plain functions. */
#ifndef OLVEX_TRACE_OLVEXWRAPPER_H
#define OLVEX_TRACE_OLVEXWRAPPER_H

#include <olvex/trace/Allocation.h>
#include <olvex/trace/OlvLogWrapper.h>

inline namespace olvex_trace {

/** The components, in the order of createWrapper(). */
enum OlvexType : int {
    OLVEX_HARDWARE = 0,
    OLVEX_VPD = 1,
    OLVEX_COMMON = 2,
    OLVEX_SIGEVAL = 3,
    OLVEX_FILE_SCANNER = 4,
    OLVEX_PLUGIN = 5,
    OLVEX_USE = 6,
    OLVEX_NET = 7
};

/** The trace object of one component. */
class OVX_API OlvexWrapper {
  public:
    OVX_TRACE_ALLOCATION

    virtual ~OlvexWrapper();
    OlvexWrapper(const OlvexWrapper &) = delete;
    OlvexWrapper &operator=(const OlvexWrapper &) = delete;

    /** The component's object, borrowed, made on the first request; none for another value. */
    static OlvexWrapper *getInstance(OlvexType type);
    /** Deletes all objects; a later request makes new ones on the same handles. Not while others
        use them. */
    static void cleanupInstances();
    /** initializeWrapper(); belongs before the first request for an object. */
    static void initialize(const char *propertiesFile);

    /** traceMIN() on the component's handle. */
    void traceMIN(int line, const char *file, const char *method, const char *format, ...)
        OVX_PRINTF_LIKE(5, 6);
    /** traceMID() on the component's handle. */
    void traceMID(int line, const char *file, const char *method, const char *format, ...)
        OVX_PRINTF_LIKE(5, 6);
    /** traceMAX() on the component's handle. */
    void traceMAX(int line, const char *file, const char *method, const char *format, ...)
        OVX_PRINTF_LIKE(5, 6);
    /** traceEntry() on the component's handle. */
    void traceMidEntry(int line, const char *file, const char *method, const char *format, ...)
        OVX_PRINTF_LIKE(5, 6);
    /** traceExit() on the component's handle. */
    void traceMidExit(int line, const char *file, const char *method, const char *format, ...)
        OVX_PRINTF_LIKE(5, 6);

    /** Says whether the handle's level is exactly `level`. */
    bool istraceActive(int level);
    /** The handle's level. */
    int getTrcLevel();

  private:
    explicit OlvexWrapper(OlvLogWrapper *handle);

    OlvLogWrapper *handle_;

    static OlvexWrapper *HardwareWrapper_;
    static OlvexWrapper *VpdWrapper_;
    static OlvexWrapper *ComWrapper_;
    static OlvexWrapper *XseWrapper_;
    static OlvexWrapper *FsWrapper_;
    static OlvexWrapper *PluginWrapper_;
    static OlvexWrapper *UseWrapper_;
    static OlvexWrapper *NetWrapper_;

    struct Component;
    static const Component components_[8];
};

/** The object of the component OLVEX_HARDWARE, borrowed. */
OVX_API OlvexWrapper *getOlvexHw();
/** The object of the component OLVEX_VPD, borrowed. */
OVX_API OlvexWrapper *getOlvexSw();
/** The object of the component OLVEX_COMMON, borrowed. */
OVX_API OlvexWrapper *getOlvexCom();
/** The object of the component OLVEX_SIGEVAL, borrowed. */
OVX_API OlvexWrapper *getOlvexXse();
/** The object of the component OLVEX_FILE_SCANNER, borrowed. */
OVX_API OlvexWrapper *getOlvexFs();
/** The object of the component OLVEX_PLUGIN, borrowed. */
OVX_API OlvexWrapper *getOlvexPlugin();
/** The object of the component OLVEX_USE, borrowed. */
OVX_API OlvexWrapper *getOlvexUse();
/** The object of the component OLVEX_NET, borrowed. */
OVX_API OlvexWrapper *getOlvexNet();

} // namespace olvex_trace

#endif
