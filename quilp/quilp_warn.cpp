#include "quilp_warn.h"

#include <iostream>

namespace {
std::ostream* installed = nullptr;
}

std::ostream& quilp_warn()
{
    return installed ? *installed : std::cerr;
}

std::ostream* set_quilp_warn(std::ostream* sink)
{
    std::ostream* previous = installed;
    installed = sink;
    return previous;
}
