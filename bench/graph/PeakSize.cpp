#include "bench/graph/PeakSize.h"

#include <fstream>
#include <malloc.h>
#include <string>

namespace vantorix::bench {
namespace {

double bytesAtRestart = 0;

double statusBytes(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(field, 0) == 0) return 1024.0 * std::stod(line.substr(field.size() + 1));
    }
    return 0;
}

}  // namespace

bool restartPeak() {
    malloc_trim(0);
    std::ofstream references("/proc/self/clear_refs");
    references << "5" << std::flush;
    bytesAtRestart = statusBytes("VmRSS");
    return references.good();
}

double peakBytes() { return statusBytes("VmHWM") - bytesAtRestart; }

}  // namespace vantorix::bench
