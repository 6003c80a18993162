#include "bdd_fatal.h"

#include <cstdlib>
#include <iostream>

namespace {
fatal_ending_handler current_handler = nullptr;
}

fatal_ending_handler set_fatal_ending(fatal_ending_handler handler)
{
    fatal_ending_handler previous = current_handler;
    current_handler = handler;
    return previous;
}

void fatal_ending()
{
    std::cerr.flush();
    if (current_handler)
        current_handler();
    std::exit(1);
}
