#include "quilp_warn.h"

#include "warn_sink.h"

namespace {
warn_sink sink;
}

std::ostream& quilp_warn() { return sink.stream(); }

std::ostream* set_quilp_warn(std::ostream* stream) { return sink.install(stream); }
