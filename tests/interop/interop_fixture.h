// The interop library as it is opened at run time, and a listener that says what it got.
#pragma once

#include "cim_values.h"
#include "paths.h"
#include "platform/interop.h"

#include <dlfcn.h>
#include <server_script.h>
#include <sysroot_fixture.h>

class InteropFixture : public SysrootFixture {
protected:
    void startListener(const std::string& answers = "ok") {
        listener = std::make_unique<ServerScript>("indication_listener.py", sysroot.place("/requests"),
                                                  std::vector<std::string>{"--answers", answers});
    }
    std::string url(const std::string& path = "/cimom") const {
        return "http://127.0.0.1:" + std::to_string(listener->port()) + path;
    }

    // The export message; nothing when the library makes none.
    std::optional<std::string> render(const CMPIInstance* instance) const {
        char* text = nullptr;
        const int result = generate_(instance, &text);
        EXPECT_EQ(result == 0, text != nullptr);
        const std::unique_ptr<char, decltype(&std::free)> owner(text, std::free);
        return result == 0 ? std::optional<std::string>(text) : std::nullopt;
    }
    std::optional<std::string> render(const broker::Instance& instance) {
        broker::Scope scope(broker);
        return render(scope.make(instance));
    }
    int post(const std::string& to, const char* text) const { return send_(to.c_str(), text); }

    broker::Broker broker;
    std::unique_ptr<ServerScript> listener;

private:
    template <class Function>
    static Function find(const char* entry) {
        // Stays open, as in an object manager.
        static void* const library = dlopen(paths::interopLibrary, RTLD_LAZY);
        return library != nullptr ? reinterpret_cast<Function>(dlsym(library, entry)) : nullptr;
    }
    GenerateIndicationResponse generate_ =
        find<GenerateIndicationResponse>("qom_generate_indication_response");
    SendIndications send_ = find<SendIndications>("qom_send_indications");
};
