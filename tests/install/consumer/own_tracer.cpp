// A host with a tracer and a factory of its own, and a String and a trim() of its own in a part
// that knows nothing of the tracing front end. Derives, casts and asks for types, so the type
// information must be whole.
#include <olvex/trace/StdoutTracer.h>
#include <olvex/trace/Trace.h>
#include <olvex/trace/TracerFactory.h>

#include <cstdio>
#include <memory>
#include <typeinfo>

const char *unrelatedPart();

namespace {

class CountingTracer : public Tracer {
  public:
    void logMessage(Level, const char *, int, const char *, const char *text) override
    {
        std::printf("message %d: %s\n", ++messages_, text);
    }
    void logEntry(Level, const char *, int, const char *, const char *) override { ++entries_; }
    void logExit(Level, const char *, int, const char *, const char *) override { --entries_; }
    void setLevel(Level) override {}
    Level getLevel() override { return LEVEL_INFO; }
    int entries() const { return entries_; }

  private:
    int messages_ = 0;
    int entries_ = 0;
};

class CountingFactory : public TracerFactory {
  public:
    Tracer *getTracer(Tracer::Component) override { return &tracer_; }

  private:
    CountingTracer tracer_;
};

} // namespace

int main()
{
    const std::unique_ptr<TracerFactory> factory = std::make_unique<CountingFactory>();
    Tracer *tracer = factory->getTracer(Tracer::COMPONENT_VPD);
    {
        Trace trace(*tracer, "main");
        trace << "from " << unrelatedPart() << Trace::end;
    }
    Tracer::initialize(Tracer::TYPE_STDOUT, nullptr);
    Tracer *console = Tracer::getInstance(Tracer::COMPONENT_VPD);
    console->logMessage(Tracer::LEVEL_FATAL, "", 0, "main", "console");
    const bool typesAreRight =
        dynamic_cast<StdoutTracer *>(console) && !dynamic_cast<CountingTracer *>(console) &&
        dynamic_cast<CountingTracer *>(tracer) && typeid(*console) == typeid(StdoutTracer) &&
        dynamic_cast<CountingFactory *>(factory.get());
    const Tracer *own = new StdoutTracer(Tracer::COMPONENT_COMMON);
    delete own;
    std::printf("types are %s\n", typesAreRight ? "right" : "wrong");
    Tracer::cleanup();
}
