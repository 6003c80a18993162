#include "runs_warn.h"

#include <iostream>

namespace {
std::ostream* installed = nullptr;
}

std::ostream& runs_warn()
{
    return installed ? *installed : std::cerr;
}

std::ostream* set_runs_warn(std::ostream* sink)
{
    std::ostream* previous = installed;
    installed = sink;
    return previous;
}
