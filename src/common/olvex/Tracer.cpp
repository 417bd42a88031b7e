// The choice of the kind of tracers. A lock of its own guards the choice; asking for a tracer takes
// none once a kind was chosen.
#include <olvex/trace/Tracer.h>

#include <olvex/trace/OlvexTracerFactory.h>
#include <olvex/trace/StderrTracerFactory.h>
#include <olvex/trace/StdoutTracerFactory.h>

#include <cstdlib>
#include <pthread.h>

// Stands where an abstract class has no function. Ours, so that the library takes it from nowhere.
extern "C" [[gnu::visibility("hidden"), noreturn]] void __cxa_pure_virtual()
{
    std::abort();
}

namespace {

pthread_mutex_t choice = PTHREAD_MUTEX_INITIALIZER;

class ChoiceLock {
  public:
    ChoiceLock() { pthread_mutex_lock(&choice); }
    ~ChoiceLock() { pthread_mutex_unlock(&choice); }
    ChoiceLock(const ChoiceLock &) = delete;
    ChoiceLock &operator=(const ChoiceLock &) = delete;
};

TracerFactory *makeFactory(Tracer::Type type, const char *propertiesFile)
{
    switch (type) {
    case Tracer::TYPE_OLVEX: return new OlvexTracerFactory(propertiesFile);
    case Tracer::TYPE_STDOUT: return new StdoutTracerFactory;
    case Tracer::TYPE_STDERR: return new StderrTracerFactory;
    }
    return nullptr;
}

} // namespace

TracerFactory *Tracer::_tracerFactory;
bool Tracer::_inited;

Tracer::~Tracer() = default;

int Tracer::initialize(Type type, const char *propertiesFile)
{
    const ChoiceLock lock;
    if (!_inited) {
        TracerFactory *factory = makeFactory(type, propertiesFile);
        __atomic_store_n(&_tracerFactory, factory, __ATOMIC_RELEASE);
        _inited = factory != nullptr;
    }
    return _inited ? 0 : -1;
}

void Tracer::cleanup()
{
    const ChoiceLock lock;
    delete __atomic_exchange_n(&_tracerFactory, nullptr, __ATOMIC_ACQ_REL);
    _inited = false;
}

Tracer *Tracer::getInstance(Component component)
{
    TracerFactory *factory = __atomic_load_n(&_tracerFactory, __ATOMIC_ACQUIRE);
    if (!factory) {
        initialize(TYPE_OLVEX, nullptr);
        factory = __atomic_load_n(&_tracerFactory, __ATOMIC_ACQUIRE);
    }
    return factory ? factory->getTracer(component) : nullptr;
}
