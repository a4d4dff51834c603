#include "ipmi_sim.h"

#include "loopback.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <poll.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ph_test {
namespace {

namespace fs = std::filesystem;

constexpr char user[] = "admin";
constexpr char password[] = "simulated-bmc";
constexpr int portsTried = 5;
constexpr int millisecondsToStart = 10000;
constexpr int millisecondsPerProbe = 50;

class UdpSocket {
public:
    UdpSocket() : descriptor_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
    ~UdpSocket() { ::close(descriptor_); }
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// A port that nothing listens on now. Another program may take it before the simulator does; then the next is
// tried.
std::uint16_t freePort() {
    const UdpSocket socket;
    auto address = loopback(0);
    socklen_t size = sizeof address;
    if (::bind(socket.descriptor(), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::getsockname(socket.descriptor(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no free UDP port on loopback");
    return ntohs(address.sin_port);
}

std::string lanConfiguration(std::uint16_t port, const std::string& chassisControl) {
    std::ostringstream out;
    out << "name \"sim\"\nset_working_mc 0x20\nstartlan 1\naddr 127.0.0.1 " << port << "\npriv_limit admin\n";
    for (const char* level : {"callback", "user", "operator", "admin"})
        out << "allowed_auths_" << level << " none md2 md5 straight\n";
    out << "guid a123456789abcdefa123456789abcdef\nendlan\n"
        << "user 1 true \"\" \"anonymous\" user 10 none md2 md5 straight\n"
        << "user 2 true \"" << user << "\" \"" << password << "\" admin 10 none md2 md5 straight\n";
    if (!chassisControl.empty())
        out << "chassis_control \"" << chassisControl << "\"\n";
    return out.str();
}

fs::path makeDirectory() {
    std::string name = (fs::temp_directory_path() / "ph-ipmi-sim-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("cannot make " + name);
    return name;
}

void write(const fs::path& path, const std::string& text) {
    if (!(std::ofstream(path) << text << std::flush))
        throw std::runtime_error("cannot write " + path.string());
}

std::string read(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// In the child, between fork and exec: only async-signal-safe calls.
[[noreturn]] void become(const char* const* arguments, const char* log) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // a test that is killed leaves no simulator behind
    const int input = ::open("/dev/null", O_RDONLY);
    const int output = ::open(log, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (::dup2(input, STDIN_FILENO) >= 0 && ::dup2(output, STDOUT_FILENO) >= 0 &&
        ::dup2(output, STDERR_FILENO) >= 0)
        ::execvp(arguments[0], const_cast<char* const*>(arguments));
    ::_exit(127);
}

} // namespace

IpmiSim::IpmiSim(const std::vector<SimSensor>& sensors, std::string chassisControl,
                 const std::string& moreCommands, std::string moreConfiguration)
    : directory_(makeDirectory()),
      chassisControl_(std::move(chassisControl)),
      moreConfiguration_(std::move(moreConfiguration)) {
    fs::create_directory(directory_ / "state");
    write(directory_ / "commands", simCommands(sensors) + moreCommands);
    for (int i = 0; i < portsTried; ++i)
        if (start())
            return;
    const std::string log = read(directory_ / "log");
    fs::remove_all(directory_);
    throw std::runtime_error("ipmi_sim does not start: " + log);
}

IpmiSim::~IpmiSim() {
    stop();
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
}

bool IpmiSim::start() {
    port_ = freePort();
    const std::string lan = directory_ / "lan.conf", commands = directory_ / "commands",
                      state = directory_ / "state", log = directory_ / "log";
    write(lan, lanConfiguration(port_, chassisControl_) + moreConfiguration_);
    // Without -p every change of the event log would write the whole of it to a file.
    const char* const arguments[] = {"ipmi_sim",       "-n", "-p",          "-c",   lan.c_str(), "-f",
                                     commands.c_str(), "-s", state.c_str(), nullptr};
    process_ = ::fork();
    if (process_ == 0)
        become(arguments, log.c_str());
    for (int waited = 0; waited < millisecondsToStart; waited += millisecondsPerProbe) {
        if (answers())
            return true;
        if (::waitpid(process_, nullptr, WNOHANG) == process_) {
            process_ = -1;
            return false;
        }
    }
    stop();
    return false;
}

// Asks for the channel's authentication capabilities, which needs no session (IPMI 2.0, 13.13.2 and 22.13).
bool IpmiSim::answers() const {
    static constexpr std::uint8_t request[] = {0x06, 0x00, 0xFF, 0x07, // RMCP, class IPMI
                                               0x00, 0,    0,    0,    0,    0,    0,    0,    0,
                                               9, // no session
                                               0x20, 0x18, 0xC8, 0x81, 0x00, 0x38, 0x0E, 0x04, 0x35};
    const UdpSocket socket;
    const auto address = loopback(port_);
    ::connect(socket.descriptor(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::send(socket.descriptor(), request, sizeof request, 0);
    pollfd waiting{.fd = socket.descriptor(), .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, millisecondsPerProbe) != 1)
        return false;
    std::uint8_t answer[64];
    if (::recv(socket.descriptor(), answer, sizeof answer, 0) > 0)
        return true;
    ::usleep(millisecondsPerProbe * 1000); // refused at once: the port is not open yet
    return false;
}

void IpmiSim::stop() {
    if (process_ <= 0)
        return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
}

// Without a process the number is -1, which would mean every process of the user.
void IpmiSim::pause() const {
    if (process_ > 0)
        ::kill(process_, SIGSTOP);
}

void IpmiSim::resume() const {
    if (process_ > 0)
        ::kill(process_, SIGCONT);
}

std::string IpmiSim::ipmitool(const std::string& arguments) const {
    const std::string command = "ipmitool -I lanplus -C 3 -H 127.0.0.1 -p " + std::to_string(port_) + " -U " +
                                user + " -P " + password + " " + arguments + " 2>&1";
    std::string output;
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    char part[256];
    while (pipe && fgets(part, sizeof part, pipe.get()) != nullptr)
        output += part;
    return output;
}

ipmi::SessionSettings IpmiSim::settings() const {
    // ipmi_sim takes the privilege level of an Open Session Request for the highest the user may have, and 0
    // for none.
    constexpr int openSessionPrivilege = 0x10;
    return {.address = "127.0.0.1",
            .port = port_,
            .userName = user,
            .password = password,
            .workaroundFlags = openSessionPrivilege};
}

} // namespace ph_test
