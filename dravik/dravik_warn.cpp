#include "dravik_warn.h"

#include <iostream>

namespace {
std::ostream* installed = nullptr;
}

std::ostream& dravik_warn()
{
    return installed ? *installed : std::cerr;
}

std::ostream* set_dravik_warn(std::ostream* sink)
{
    std::ostream* previous = installed;
    installed = sink;
    return previous;
}
