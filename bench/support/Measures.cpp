#include "support/Measures.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include <unistd.h>

namespace tallowbay::bench {

namespace {

// Of what the kernel tells of a process behind its name: this field, as user, and the next one.
double secondsOfFields(pid_t process, std::size_t first)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::vector<std::string> values{std::istream_iterator<std::string>(fields), {}};
    const double ticks = std::stod(values.at(first)) + std::stod(values.at(first + 1));
    return ticks / double(sysconf(_SC_CLK_TCK));
}

} // namespace

double millisecondsSince(Steady::time_point start)
{
    return std::chrono::duration<double, std::milli>(Steady::now() - start).count();
}

double quantile(std::vector<double> values, double part)
{
    std::ranges::sort(values);
    return values[std::min(values.size() - 1, std::size_t(part * double(values.size())))];
}

std::map<std::string, long> statusOf(pid_t process)
{
    std::map<std::string, long> values;
    std::ifstream file("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string key;
        long value = 0;
        if (words >> key >> value)
            values[key] = value;
    }
    return values;
}

double cpuSeconds(pid_t process)
{
    return secondsOfFields(process, 11);
}

double cpuSecondsOfChildren(pid_t process)
{
    return secondsOfFields(process, 13);
}

void forgetPeakMemory(pid_t process)
{
    constexpr int resetPeak = 5;
    std::ofstream("/proc/" + std::to_string(process) + "/clear_refs") << resetPeak;
}

void parseOptions(int argc, char** argv, const std::map<std::string, int*>& known)
{
    for (int at = 1; at + 1 < argc; at += 2)
        *known.at(argv[at]) = std::stoi(argv[at + 1]);
}

} // namespace tallowbay::bench
