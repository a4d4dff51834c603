#include "check_platform/probe.h"

#include "json_text.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/mman.h>
#include <unistd.h>

namespace phctl::check {

namespace {

bool isOfDatabase(std::string_view library) {
    return library == "libsmashdb.so";
}

// A file without a name for the debug log of the reference platform, whose lines say why a function failed. A vendor's own
// log may be elsewhere, and then there is only the result.
int openLog() {
    const int file = memfd_create("debug log", 0);
    if (file != -1)
        setenv("PH_DEBUG_LOG", ("/proc/self/fd/" + std::to_string(file)).c_str(), 1);
    return file;
}

} // namespace

void tell(int channel, const nlohmann::ordered_json& event) {
    const std::string line = jsonLine(event) + '\n';
    [[maybe_unused]] const ssize_t written = write(channel, line.data(), line.size());
}

// ---- One call

Call::Call(Probe& probe, std::string arguments, std::vector<Output*> outputs,
           const std::function<int()>& work)
    : probe_(probe), arguments_(std::move(arguments)) {
    probe_.make(*this, std::move(outputs), work);
}

Call::~Call() {
    if (!isSkipped_)
        probe_.report(*this);
}

void Call::expect(bool holds, const std::string& fault) {
    if (!holds)
        addFault(fault);
}

void Call::expectFailure(const char* reason) {
    isFailureExpected_ = true;
    if (isMade_ && result_ == 0)
        addFault(std::string("it succeeds for ") + reason);
}

void Call::addFault(const std::string& fault) {
    if (!fault.empty() && std::ranges::find(faults_, fault) == faults_.end())
        faults_.push_back(fault);
}

void Call::enter(const char* step) const {
    if (isMade_)
        probe_.tell({{"step", step}});
}

// ---- All calls of a function

Probe::Probe(const char* library, const char* function, const Settings& settings)
    : library_(library), function_(function), settings_(settings), libraries_(library), log_(openLog()) {}

Probe::~Probe() {
    if (session_ != nullptr)
        if (auto* const close = find<decltype(CIM_Close_Session)>("CIM_Close_Session"))
            close(*session_);
    if (auto* const close = find<decltype(db_close)>("db_close"))
        for (SMASH_DB_HANDLE handle : databases_)
            close(handle);
    if (sessionInfo_ != nullptr)
        explicit_bzero(sessionInfo_.get(), sizeof(IPMISessionInfo)); // it has a password
}

void Probe::allow(int seconds) const {
    tell({{"allow", seconds}});
}

void Probe::make(Call& call, std::vector<Output*> outputs, const std::function<int()>& work) {
    std::erase(outputs, nullptr);
    call.isSkipped_ = calls_++ < settings_.first;
    if (call.isSkipped_)
        return;
    tell({{"call", call.arguments_}});
    makeOnce(call, outputs, 0xA5, work);
    const auto isUntouched = [](const Output* output) { return output->isUntouched(); };
    // What was written may happen to be the pattern; what was not follows another one.
    if (call && std::ranges::any_of(outputs, isUntouched)) {
        makeOnce(call, outputs, 0x5A, work);
        for (const Output* output : outputs)
            call.expect(!call || !output->isUntouched(), "it succeeds without writing " + output->name());
    }
}

void Probe::makeOnce(Call& call, const std::vector<Output*>& outputs, std::uint8_t pattern,
                     const std::function<int()>& work) {
    using Clock = std::chrono::steady_clock;
    for (Output* output : outputs)
        output->fill(pattern);
    if (log_ != -1 && ftruncate(log_, 0) != 0)
        log_ = -1;
    const auto start = Clock::now();
    call.result_ = work();
    call.milliseconds_ = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
    call.isMade_ = true;
    for (const Output* output : outputs) {
        call.expect(output->areGuardsIntact(), "it writes beyond " + output->name());
        if (call)
            call.addFault(output->fault());
    }
    if (isOfDatabase(library_))
        call.expect(call.result_ == 0 || call.result_ == 1,
                    "it returns " + std::to_string(call.result_) + ", which is neither 0 nor 1");
    else if (call.milliseconds_ > (settings_.timeout + 1) * 1000L)
        call.addFault("it has taken longer than the " + std::to_string(settings_.timeout) +
                      " s it was given");
}

void Probe::reportMissing() const {
    tell({{"call", ""}});
    tell({{"outcome", Outcome::Missing}, {"remark", libraries_.faultOf(library_)}, {"milliseconds", 0}});
}

void Probe::report(const Call& call) {
    Outcome outcome = Outcome::Works;
    std::string remark = call.remark_;
    if (!call.faults_.empty()) {
        outcome = Outcome::BreaksContract;
        remark.clear();
        for (const std::string& fault : call.faults_)
            remark += (remark.empty() ? "" : "; ") + fault;
    } else if (call.result_ != 0 && !call.isFailureExpected_) {
        outcome = Outcome::Refused;
        remark = reasonOfFailure();
        if (remark.empty())
            remark = "it returns " + std::to_string(call.result_);
    }
    tell({{"outcome", outcome}, {"remark", remark}, {"milliseconds", call.milliseconds_}});
}

// The last line of the debug log that the function wrote, without what stands before its words.
std::string Probe::reasonOfFailure() {
    if (isOfDatabase(library_)) {
        auto* const lastError = find<decltype(db_last_error)>("db_last_error");
        const char* const error = lastError != nullptr ? lastError() : nullptr;
        return error != nullptr ? error : "";
    }
    char text[4096];
    const ssize_t length = log_ != -1 ? pread(log_, text, sizeof text, 0) : 0;
    const std::string log(text, length > 0 ? static_cast<std::size_t>(length) : 0);
    const std::string mark = std::string(": ") + function_ + ": ";
    const std::size_t found = log.rfind(mark);
    if (found == std::string::npos)
        return {};
    const std::size_t begin = found + mark.size();
    return log.substr(begin, log.find('\n', begin) - begin);
}

// ---- What checks need

SMASH_DB_HANDLE Probe::database(const char* opener) {
    SMASH_DB_HANDLE handle = nullptr;
    use<decltype(db_init)>(opener, &handle);
    databases_.push_back(handle);
    return handle;
}

const IPMISessionInfo& Probe::sessionInfo() {
    if (sessionInfo_ == nullptr) {
        IPMISessionInfo* row = nullptr;
        use<decltype(db_get_ipmi_session_info)>("db_get_ipmi_session_info", database(), &row);
        sessionInfo_ = std::make_unique<IPMISessionInfo>(*row);
        explicit_bzero(row, sizeof *row);
        std::free(row);
    }
    return *sessionInfo_;
}

IPMI20_SESSION_T* Probe::session() {
    if (session_ == nullptr) {
        auto session = std::make_unique<Out<IPMI20_SESSION_T>>("the session", IPMI20_SESSION_T{});
        session->fill(0);
        openSession([&](auto... arguments) {
            use<decltype(CIM_Create_IPMI20_Session)>("CIM_Create_IPMI20_Session",
                                                     static_cast<IPMI20_SESSION_T*>(*session), arguments...);
        });
        session_ = std::move(session);
    }
    return *session_;
}

std::vector<Probe::Lan> Probe::lans() {
    std::uint8_t count = 0;
    std::uint8_t indices[CIM_MAX_LANS] = {};
    use<decltype(CIM_GetLANCount)>("CIM_GetLANCount", session(), &count, indices, timeout());
    std::vector<Lan> lans;
    for (std::size_t i = 0; i < std::min<std::size_t>(count, CIM_MAX_LANS); ++i) {
        std::uint8_t channel = 0;
        use<decltype(CIM_GetChannelNum)>("CIM_GetChannelNum", session(), indices[i], &channel, timeout());
        lans.push_back({indices[i], channel,
                        "LAN " + std::to_string(indices[i]) + ", channel " + std::to_string(channel)});
    }
    if (lans.empty())
        throw NotPossible("the BMC has no LAN");
    return lans;
}

} // namespace phctl::check
