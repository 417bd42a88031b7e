/*
 * Three components trace their work through nested calls: by the trace stream, with one object at
 * the top of each method.
 *
 *     trace FILE.properties    through the toolkit, as the properties file says
 *     trace --stderr           straight to standard error
 */
#include <olvex/Config.h>
#include <olvex/Memory.h>
#include <olvex/trace.h>

#include <cstdio>
#include <cstring>

namespace {

constexpr Tracer::Component kComponents[] = {Tracer::COMPONENT_HARDWARE, Tracer::COMPONENT_COMMON,
                                             Tracer::COMPONENT_PLUGIN};

// What an object puts into the stream.
class Sensor : public Object {
  public:
    Sensor(const char *name, int degrees) : name_(name), degrees_(degrees) {}
    String toString() const override
    {
        char text[64];
        std::snprintf(text, sizeof text, "%s at %d degrees", name_, degrees_);
        return text;
    }

  private:
    const char *name_;
    int degrees_;
};

void readSensor(const Sensor &sensor)
{
    Trace trace(*Tracer::getInstance(Tracer::COMPONENT_HARDWARE), "readSensor");
    trace.pos(__FILE__, __LINE__) << sensor << Trace::end;

    static const char reply[] = "\1temp=71\0\2fan=2200";
    trace << "reply:";
    trace.hex(reply, sizeof reply).pos(__FILE__, __LINE__) << Trace::end;
}

bool loadPlugin(const char *name)
{
    Trace trace(*Tracer::getInstance(Tracer::COMPONENT_PLUGIN), "loadPlugin");
    trace.pos(__FILE__, __LINE__) << "name=" << name << Trace::end;
    OVX_SET_ERROR(2);
    trace.dumpError().pos(__FILE__, __LINE__) << Trace::end;
    return false;
}

void inspect(const char *plugin)
{
    Trace trace(*Tracer::getInstance(Tracer::COMPONENT_COMMON), "inspect");
    readSensor(Sensor("board", 71));
    const bool loaded = loadPlugin(plugin);
    trace.pos(__FILE__, __LINE__) << "loaded=" << loaded << trace.format(" (%.1f%%)", 50.0)
                                  << Trace::end;
}

// Says where the trace file is, which may be another place than the properties file names.
void sayWhere()
{
    OvxObjCfg *cfg = OvxLogMgrGetCfg("handlers.traceFile");
    char *name = OvxGetObjCfgProp(cfg, "fileName", nullptr);
    std::printf("the trace is in %s\n", name ? name : "no file");
    BaxMemoryFree(name);
    OvxReleaseObjCfg(cfg);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: trace FILE.properties | --stderr\n");
        return 2;
    }
    const bool toStderr = std::strcmp(argv[1], "--stderr") == 0;
    Tracer::initialize(toStderr ? Tracer::TYPE_STDERR : Tracer::TYPE_OLVEX, argv[1]);

    // Console tracers begin at their least detailed level; those of the toolkit have the level that
    // the properties file gives them.
    for (const Tracer::Component component : kComponents)
        Tracer::getInstance(component)->setLevel(Tracer::LEVEL_INFO);
    inspect("raid");
    if (!toStderr) sayWhere();
    Tracer::cleanup();
}
