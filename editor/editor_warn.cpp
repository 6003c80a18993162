#include "editor_warn.h"

#include <iostream>

namespace {
std::ostream* installed = nullptr;
}

std::ostream& editor_warn()
{
    return installed ? *installed : std::cerr;
}

std::ostream* set_editor_warn(std::ostream* sink)
{
    std::ostream* previous = installed;
    installed = sink;
    return previous;
}
