// What delivers alerts, and the daemon of the command-line protocol: libraries that are opened when they are needed.
#include "check_platform/rows.h"
#include "check_platform/table_check.h"

#include <algorithm>
#include <cstring>
#include <platform/clp_packets.h>
#include <platform/event_descriptions.h>
#include <type_traits>

namespace phctl::check {
namespace {

// ---- Event texts

constexpr const char* severities[] = {"Ok", "Warning", "Critical", "Non-Recoverable", "Unspecified"};

struct Event {
    const char* words;
    std::uint8_t sensorType, eventType, data;
};
constexpr Event events[] = {
    {"temperature, upper critical going high", 0x01, 0x01, 0x59},
    {"temperature, its end", 0x01, 0x81, 0x59},
    {"severity, to critical from less severe", 0x07, 0x07, 0x02},
    {"a sensor type that is reserved", 0x7F, 0x6F, 0x00},
};

template <class Judge>
void describe(Probe& probe, Judge judge) {
    for (const auto& [words, sensorType, eventType, data] : events) {
        const std::uint8_t record[16] = {1, 0, 0x02,       0, 0,         0,    0, 0x20,
                                         0, 4, sensorType, 1, eventType, data, 0, 0};
        OutText text("the text", EVENT_TEXT_SIZE);
        auto call = probe.call<std::remove_pointer_t<EventText>>(words, record, text);
        if (call)
            judge(call, static_cast<const char*>(text));
        else if (call.isMade())
            call.expect(*static_cast<const char*>(text) == '\0', "it fails and leaves a text");
    }
}

void describeEvent(Probe& probe) {
    describe(probe, [](Call&, const char*) {});
}

void describeSeverity(Probe& probe) {
    describe(probe, [](Call& call, const char* text) {
        call.expect(
            std::ranges::any_of(severities, [=](const char* each) { return std::strcmp(each, text) == 0; }),
            "the text is no severity");
    });
}

// ---- Jobs and sessions of the command-line protocol

template <class Row>
void getRows(Probe& probe) {
    Out<Row*> rows("the rows");
    Out<int> count("the count");
    auto call = probe.call<int(Row**, int*)>("", rows, count);
    const auto owner = owned(call, rows, call && *count > 0 ? static_cast<std::size_t>(*count) : 0);
    call.expect(!call || *count >= 0, "the count is no number of rows");
}

void getClpJob(Probe& probe) {
    Out<StoredJobRow> job("the job");
    probe.call<decltype(SMP_Frame_Job_Req)>("a job that there is not", "clp-job-phctl", job)
        .expectFailure("a job that there is not");
}

// CIM_CLPSettingData says which numbers there are.
void getOptions(Probe& probe) {
    Out<CLPOptions> options("the options");
    if (auto call = probe.call<decltype(SMP_Frame_Options_Req)>("", options)) {
        call.expectText("CurrentDefaultTarget", options->CurrentDefaultTarget);
        call.expectText("OutputLanguage", options->OutputLanguage);
        call.expectText("DisplayOption", options->DisplayOption);
        call.expect(options->OutputFormat >= 2 && options->OutputFormat <= 5, "OutputFormat is none");
        call.expect(options->OutputVerbosity >= 2 && options->OutputVerbosity <= 4,
                    "OutputVerbosity is none");
        call.expect(options->OutputPosition >= 2 && options->OutputPosition <= 3, "OutputPosition is none");
        call.expect(options->OutputOrder >= 2 && options->OutputOrder <= 3, "OutputOrder is none");
    }
}

constexpr const char* noTexts = "without it, alerts have neither severity nor description";
constexpr const char* noClpJobs = "without it, there are no jobs of the command-line protocol";
constexpr const char* noClpSessions = "without it, sessions of the command-line protocol are processes";
constexpr const char* noClpOptions =
    "without it, nobody tells how sessions of the command-line protocol answer";
constexpr Row eventTexts[] = {
    {"FindSensorType", describeEvent, false, noTexts},
    {"AlertSeverityLevel", describeSeverity, false, noTexts},
    {"SELLog", describeEvent, false, noTexts},
};
constexpr Row mails[] = {{"smtp_mail", nullptr, true, "it would send a mail"}};
constexpr Row posts[] = {
    {"qom_generate_indication_response", nullptr, false, "it takes an instance of the object manager"},
    {"qom_send_indications", nullptr, true, "it would post an alert"},
};
constexpr Row clpJobs[] = {
    {"SMP_Frame_Jobs_Req", getRows<StoredJobRow>, false, noClpJobs},
    {"SMP_Frame_Job_Req", getClpJob, false, noClpJobs},
    {"SMP_Frame_DeleteJob_Req", nullptr, true, "it would end a job"},
    {"SMP_Frame_Sessions_Req", getRows<CLPSessionRow>, false, noClpSessions},
    {"SMP_Frame_Options_Req", getOptions, false, noClpOptions},
    {"SMP_Frame_SetOptions_Req", nullptr, true, "it would change the next sessions"},
};

} // namespace

std::span<const Row> eventTextRows() {
    return eventTexts;
}

std::span<const Row> mailingRows() {
    return mails;
}

std::span<const Row> postingRows() {
    return posts;
}

std::span<const Row> clpRows() {
    return clpJobs;
}

} // namespace phctl::check
