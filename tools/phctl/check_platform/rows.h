// The functions of a platform, each with how it is called and what is asked of what it hands out.
#pragma once

#include <span>

namespace phctl::check {

class Probe;

using Check = void (*)(Probe&);

struct Row {
    const char* function;
    Check check; // nothing for a function that is never called
    // It changes something, and puts it back.
    bool changes = false;
    const char* note = nullptr; // why it is never called, or what is done without it
};

struct Group {
    const char* library;
    std::span<const Row> rows;
};

std::span<const Group> allGroups();

// Parts of it.
std::span<const Row> supportRows();
std::span<const Row> databaseRows();
std::span<const Row> hardwareRows();
std::span<const Row> settingRows();
std::span<const Row> sessionRows();
std::span<const Row> systemRows();
std::span<const Row> firmwareRows();
std::span<const Row> sensorRows();
std::span<const Row> logRows();
std::span<const Row> networkRows();
std::span<const Row> dnsRows();
std::span<const Row> userRows();
std::span<const Row> alertRows();
std::span<const Row> mailRows();
std::span<const Row> nameRows();
std::span<const Row> mailingRows();
std::span<const Row> eventTextRows();
std::span<const Row> postingRows();
std::span<const Row> clpRows();

} // namespace phctl::check
