#include "dravik_warn.h"

#include "warn_sink.h"

namespace {
warn_sink sink;
}

std::ostream& dravik_warn() { return sink.stream(); }

std::ostream* set_dravik_warn(std::ostream* stream) { return sink.install(stream); }
