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

void addMetricsOptions(Command command) {
    const auto options = std::make_shared<MetricsOptions>();
    command
        .option("--timeout", options->timeout,
                "Seconds after which the metrics say that the BMC does not answer")
        .range(1, 600)
        .showsDefault();
    command
        .option("--format", options->format,
                "openmetrics, or prometheus, the text format 0.0.4, as node_exporter's textfile "
                "collector reads it")
        .oneOf({"openmetrics", "prometheus"})
        .showsDefault();
    command.footer(
        "The BMC is the one that `phctl sync` read. One that does not answer is told by ipmi_up, with status "
        "0.\n`phctl serve` answers the same at /metrics.\n\n"
        "Examples:\n"
        "  phctl metrics\n"
        "  phctl metrics --format prometheus > ipmi.prom.new && mv ipmi.prom.new ipmi.prom");
    command.action([options] { return printMetrics(*options); });
}

} // namespace

void addMetricsCommand(Command program) {
    program.subcommand("metrics", "Print sensors, power and event log as metrics for Prometheus",
                       addMetricsOptions);
}

} // namespace phctl
