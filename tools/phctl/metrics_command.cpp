// metrics: sensors, power, log and state of the BMC, as text for Prometheus.
#include "bmc_metrics.h"
#include "commands.h"
#include "errors.h"

#include <cstdlib>
#include <iostream>
#include <memory>

namespace phctl {
namespace {

struct MetricsOptions {
    unsigned timeout = 60; // seconds
    std::string format = "openmetrics";
};

int printMetrics(const MetricsOptions& options) {
    const auto collector = bmcMetrics(options.timeout);
    const auto result = collector->collect(options.format == "prometheus" ? view::MetricsFormat::Prometheus
                                                                          : view::MetricsFormat::OpenMetrics);
    std::cout << result.text;
    std::string known;
    for (const auto& [collectorName, reason] : result.failures)
        if (std::exchange(known, reason) != reason) // one reason often holds for several
            warn(collectorName + (": " + reason));
    if (!result.isInTime) {
        // What still waits for the BMC is not waited for.
        std::cout.flush();
        std::_Exit(std::cout ? done : complain("cannot write the output", failed));
    }
    return done;
}

void addMetricsOptions(CLI::App* command, Chosen& chosen) {
    const auto options = std::make_shared<MetricsOptions>();
    command
        ->add_option("--timeout", options->timeout,
                     "Seconds after which the metrics say that the BMC does not answer")
        ->check(CLI::Range(1, 600))
        ->capture_default_str();
    command
        ->add_option("--format", options->format,
                     "openmetrics, or prometheus, the text format 0.0.4, as node_exporter's textfile "
                     "collector reads it")
        ->check(CLI::IsMember({"openmetrics", "prometheus"}))
        ->capture_default_str();
    command->footer(
        "The BMC is the one that `phctl sync` read. One that does not answer is told by ipmi_up, with status "
        "0.\n`phctl serve` answers the same at /metrics.\n\n"
        "Examples:\n"
        "  phctl metrics\n"
        "  phctl metrics --format prometheus > ipmi.prom.new && mv ipmi.prom.new ipmi.prom");
    command->callback([&chosen, options] { chosen = [options] { return printMetrics(*options); }; });
}

} // namespace

void addMetricsCommand(CLI::App& app, Chosen& chosen) {
    addCommand(app, chosen, "metrics", "Print sensors, power and event log as metrics for Prometheus",
               addMetricsOptions);
}

} // namespace phctl
