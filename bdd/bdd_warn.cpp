#include "bdd_warn.h"

#include <iostream>

namespace {
std::ostream* installed = nullptr;
}

std::ostream& bdd_warn()
{
    return installed ? *installed : std::cerr;
}

std::ostream* set_bdd_warn(std::ostream* sink)
{
    std::ostream* previous = installed;
    installed = sink;
    return previous;
}
