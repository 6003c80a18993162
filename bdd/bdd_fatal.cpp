#include "bdd_fatal.h"

#include <cstdlib>
#include <iostream>

namespace {
fatal_ending_handler current_handler = nullptr;
fatal_flush_hook current_flush = nullptr;
}

fatal_ending_handler set_fatal_ending(fatal_ending_handler handler)
{
    fatal_ending_handler previous = current_handler;
    current_handler = handler;
    return previous;
}

fatal_flush_hook set_fatal_flush(fatal_flush_hook hook)
{
    fatal_flush_hook previous = current_flush;
    current_flush = hook;
    return previous;
}

void fatal_ending()
{
    if (current_flush)
        current_flush();
    std::cerr.flush();
    if (current_handler)
        current_handler();
    std::exit(1);
}
