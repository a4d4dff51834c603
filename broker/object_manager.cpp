#include "broker/object_manager.h"

#include <atomic>

namespace broker {

namespace {

std::atomic<const CMPIBroker*> currentBroker{nullptr};
std::atomic<const CMPIContext*> currentContext{nullptr};

} // namespace

ObjectManager::ObjectManager(const Broker& broker) : scope_(broker) {
    currentContext = scope_.makeContext();
    currentBroker = broker.handle();
}

ObjectManager::~ObjectManager() {
    currentBroker = nullptr;
    currentContext = nullptr;
}

} // namespace broker

#define OBJECT_MANAGER_ENTRY extern "C" __attribute__((visibility("default"))) __attribute__((used))

OBJECT_MANAGER_ENTRY const CMPIBroker* GetBroker() {
    return broker::currentBroker;
}

OBJECT_MANAGER_ENTRY const CMPIContext* GetContext() {
    return broker::currentContext;
}

// Objects are in the frames of threads, which attaching makes: there is nothing else to take or give back.
OBJECT_MANAGER_ENTRY void* qom_get_heap() {
    return const_cast<CMPIBroker*>(broker::currentBroker.load());
}

OBJECT_MANAGER_ENTRY void qom_release_heap(void*) {}
