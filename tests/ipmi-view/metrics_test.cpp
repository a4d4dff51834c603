// Metrics: their text, what a BMC that fails leaves of them, and that nobody waits longer than agreed.
#include "ipmi-view/metrics_collector.h"
#include "ipmi/command.h"

#include "elapsed.h"
#include "sysroot_fixture.h"

#include <atomic>
#include <cmath>
#include <future>
#include <gmock/gmock.h>
#include <map>
#include <thread>

namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;
using view::Metric;
using view::MetricsFormat;

TEST(MetricsText, hasTheFamiliesOfBothFormats) {
    const view::Samples samples = {
        {Metric::SensorState, {{"id", "7"}, {"name", "a \"b\" \\\nc"}, {"type", "Fan"}}, std::nan("")},
        {Metric::Up, {{"collector", "bmc"}}, 1},
        {Metric::ScrapeFailures, {{"collector", "bmc"}}, 3},
        {Metric::BmcInfo, {{"firmware_revision", "2.14"}}, 1},
        {Metric::SelFreeSpace, {}, 65535},
        {Metric::Voltage, {{"id", "1"}, {"name", "P12V"}}, 12.06},
        {Metric::Voltage, {{"id", "2"}, {"name", "1/x"}}, 1.0 / 0.0}};
    EXPECT_EQ(view::metricsText(samples, MetricsFormat::OpenMetrics),
              "# TYPE ipmi_up gauge\n"
              "# HELP ipmi_up Whether the BMC told what the collector asks for\n"
              "ipmi_up{collector=\"bmc\"} 1\n"
              "# TYPE ipmi_scrape_failures counter\n"
              "# HELP ipmi_scrape_failures How often the BMC did not tell what the collector asks for, since "
              "the start\n"
              "ipmi_scrape_failures_total{collector=\"bmc\"} 3\n"
              "# TYPE ipmi_bmc info\n"
              "# HELP ipmi_bmc What the BMC is\n"
              "ipmi_bmc_info{firmware_revision=\"2.14\"} 1\n"
              "# TYPE ipmi_sel_free_space_bytes gauge\n"
              "# UNIT ipmi_sel_free_space_bytes bytes\n"
              "# HELP ipmi_sel_free_space_bytes Room in the event log\n"
              "ipmi_sel_free_space_bytes 65535\n"
              "# TYPE ipmi_voltage_volts gauge\n"
              "# UNIT ipmi_voltage_volts volts\n"
              "# HELP ipmi_voltage_volts Voltage\n"
              "ipmi_voltage_volts{id=\"1\",name=\"P12V\"} 12.06\n"
              "ipmi_voltage_volts{id=\"2\",name=\"1/x\"} +Inf\n"
              "# TYPE ipmi_sensor_state gauge\n"
              "# HELP ipmi_sensor_state State: 0 nominal, 1 warning, 2 critical, NaN not known\n"
              "ipmi_sensor_state{id=\"7\",name=\"a \\\"b\\\" \\\\\\nc\",type=\"Fan\"} NaN\n"
              "# EOF\n");
    const std::string older = view::metricsText(samples, MetricsFormat::Prometheus);
    EXPECT_THAT(older, HasSubstr("# TYPE ipmi_scrape_failures_total counter\n"));
    EXPECT_THAT(older, HasSubstr("# TYPE ipmi_bmc_info gauge\n"));
    EXPECT_THAT(older, Not(HasSubstr("# UNIT")));
    EXPECT_THAT(older, Not(HasSubstr("# EOF")));
}

using Bytes = std::vector<std::uint8_t>;

// A BMC with answers by network function and command; it gives none to a command without.
struct PartialBmc : ipmi::Transport {
    std::map<std::pair<int, int>, Bytes> answers = {
        {{0x06, 0x01}, {0x00, 0x20, 0x01, 0x02, 0x14, 0x02, 0xBF, 0xFE, 0xFF, 0x0F, 0x48, 0x50}},
        {{0x06, 0x59}, {0xC1}},
        {{0x00, 0x01}, {0x00, 0x21, 0x00, 0x04}}, // on; drive fault
        {{0x0A, 0x40}, {0x00, 0x51, 0x07, 0x00, 0xF0, 0x03, 0, 0, 0, 0, 0, 0, 0, 0, 0x00}},
        {{0x2C, 0x02}, {0x00, 0xDC, 0x68, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x40}}};

    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t>,
                         std::span<std::uint8_t> out) override {
        const auto found = answers.find({netFn, command});
        if (found == answers.end())
            throw ipmi::TransportError("no answer");
        std::ranges::copy(found->second, out.begin());
        return found->second.size();
    }
};

std::string collect(const PartialBmc& bmc) {
    const auto collection =
        view::collectMetrics([&] { return std::make_unique<PartialBmc>(bmc); }, ipmi::Clock::now() + 1min);
    return view::metricsText(collection.samples, MetricsFormat::Prometheus);
}

class CollectedMetrics : public testing::Test {
    const Sysroot sysroot; // without a database: there are no sensors
};

TEST_F(CollectedMetrics, areThoseThatTheBmcTells) {
    PartialBmc bmc;
    const std::string all = collect(bmc);
    for (const char* line : {"ipmi_bmc_info{firmware_revision=\"2.14\",manufacturer_id=\"1048574\",system_"
                             "firmware_version=\"N/A\","
                             "bmc_url=\"N/A\"} 1\n",
                             "ipmi_chassis_power_state 1\n", "ipmi_chassis_drive_fault_state 0\n",
                             "ipmi_chassis_cooling_fault_state 1\n", "ipmi_sel_logs_count 7\n",
                             "ipmi_sel_free_space_bytes 1008\n", "ipmi_dcmi_power_consumption_watts 360\n",
                             "ipmi_up{collector=\"dcmi\"} 1\n", "ipmi_up{collector=\"ipmi\"} 0\n"})
        EXPECT_THAT(all, HasSubstr(line));

    bmc.answers[{0x2C, 0x02}] = {0xC1}; // no DCMI: nobody is told that it is down
    EXPECT_THAT(collect(bmc), Not(HasSubstr("dcmi")));
    bmc.answers[{0x0A, 0x40}] = {0xD4};
    const std::string refused = collect(bmc);
    EXPECT_THAT(refused, HasSubstr("ipmi_up{collector=\"sel\"} 0\n"));
    EXPECT_THAT(refused, HasSubstr("ipmi_up{collector=\"chassis\"} 1\n"));
    EXPECT_THAT(refused, Not(HasSubstr("ipmi_sel")));
}

TEST_F(CollectedMetrics, endWhereAnAnswerIsLost) {
    PartialBmc bmc;
    bmc.answers.erase({0x00, 0x01});
    const std::string text = collect(bmc);
    EXPECT_THAT(text, HasSubstr("ipmi_up{collector=\"bmc\"} 1\n"));
    for (const char* collector : {"chassis", "sel", "dcmi", "ipmi"})
        EXPECT_THAT(text, HasSubstr(std::string("ipmi_up{collector=\"") + collector + "\"} 0\n"));
    EXPECT_THAT(text, Not(HasSubstr("ipmi_sel")));
}

// A BMC whose session opens when the test says so, as behind a name server that hangs.
struct Gate {
    std::promise<void> promise;
    std::shared_future<void> opened = promise.get_future().share();
    std::atomic<int> sessions = 0;
};

TEST_F(CollectedMetrics, comeInTimeAndFromOneCollectionAtATime) {
    const auto gate = std::make_shared<Gate>();
    view::MetricsCollector collector(
        [gate](auto) -> std::unique_ptr<ipmi::Transport> {
            ++gate->sessions;
            gate->opened.wait();
            return std::make_unique<PartialBmc>();
        },
        300ms);
    const auto ask = [&] { return collector.collect(MetricsFormat::Prometheus); };

    std::vector<std::future<view::MetricsCollector::Result>> asked;
    const double waited = seconds([&] {
        for (int i = 0; i < 4; ++i)
            asked.push_back(std::async(std::launch::async, ask));
        for (auto& each : asked)
            each.wait();
    });
    EXPECT_LT(waited, 2);
    for (auto& each : asked) {
        const auto result = each.get();
        EXPECT_FALSE(result.isInTime);
        EXPECT_THAT(result.text, HasSubstr("ipmi_up{collector=\"bmc\"} 0\n"));
        EXPECT_THAT(result.text, HasSubstr("ipmi_scrape_failures_total{collector=\"bmc\"} 1\n"));
        EXPECT_THAT(result.text, HasSubstr("ipmi_scrape_duration_seconds "));
    }
    EXPECT_LT(seconds([&] { EXPECT_FALSE(collector.collect(MetricsFormat::Prometheus, 20ms).isInTime); }),
              0.25);
    EXPECT_EQ(gate->sessions, 1); // the first still hangs

    gate->promise.set_value();
    std::string text; // of the one that hung, or of a new one
    for (int i = 0; i < 100 && text.find("ipmi_up{collector=\"bmc\"} 1") == std::string::npos; ++i)
        text = ask().text;
    EXPECT_THAT(text, HasSubstr("ipmi_up{collector=\"bmc\"} 1\n"));
    EXPECT_THAT(text, HasSubstr("ipmi_scrape_failures_total{collector=\"bmc\"} 1\n"));
}

} // namespace
