#include "bdd_warn.h"

#include "warn_sink.h"

namespace {
warn_sink sink;
}

std::ostream& bdd_warn() { return sink.stream(); }

std::ostream* set_bdd_warn(std::ostream* stream) { return sink.install(stream); }
