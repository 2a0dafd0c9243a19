#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tallowbay::bench {

using Steady = std::chrono::steady_clock;

double millisecondsSince(Steady::time_point);

// The value below which that part of them lies, such as 0.5 for the median.
double quantile(std::vector<double> values, double part);

// What Linux tells of a process: values by name, as "VmRSS:", in KB.
std::map<std::string, long> statusOf(pid_t);

// What it has used so far, of all cores together.
double cpuSeconds(pid_t);

// What those of its children have used that have ended, with theirs.
double cpuSecondsOfChildren(pid_t);

// Its greatest memory, "VmHWM:", counts from here on.
void forgetPeakMemory(pid_t);

// Sets numbers from "--name VALUE" pairs. Throws std::out_of_range for an unknown name.
void parseOptions(int argc, char** argv, const std::map<std::string, int*>& known);

} // namespace tallowbay::bench
