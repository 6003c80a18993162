#include "editor_warn.h"

#include "warn_sink.h"

namespace {
warn_sink sink;
}

std::ostream& editor_warn() { return sink.stream(); }

std::ostream* set_editor_warn(std::ostream* stream) { return sink.install(stream); }
