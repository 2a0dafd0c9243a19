#include "platform/posix/ParentProcess.h"

#include "platform/posix/Environment.h"

#include <csignal>
#include <cstdlib>
#include <string>

#include <sys/prctl.h>
#include <unistd.h>

namespace tallowbay::posix {

namespace {

constexpr auto parentVariable = "TALLOWBAY_PARENT"; // the program's process number

bool parentIsKnown()
{
    return environmentText(parentVariable) == std::to_string(::getppid());
}

} // namespace

void beKnownToChildren()
{
    ::setenv(parentVariable, std::to_string(::getpid()).c_str(), 1);
}

void endWithParent()
{
    if (!parentIsKnown())
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (!parentIsKnown()) // it went before it was watched
        std::raise(SIGTERM);
}

} // namespace tallowbay::posix
