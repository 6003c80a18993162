#include "runs_warn.h"

#include "warn_sink.h"

namespace {
warn_sink sink;
}

std::ostream& runs_warn() { return sink.stream(); }

std::ostream* set_runs_warn(std::ostream* stream) { return sink.install(stream); }
