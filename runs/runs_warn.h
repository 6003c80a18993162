#ifndef RUNS_WARN_H
#define RUNS_WARN_H

#include <ostream>

// Where the run declarations writes its non-fatal messages (the interface import's trace lines). Standard error
// unless a stream is installed; looked up at each message, so a redirection
// of std::cerr's buffer is followed too. Fatal texts do not come here: they
// go to standard error just before the process ends.
std::ostream& runs_warn();

// Installs the stream (null restores standard error) and returns the
// previous one (null when it was standard error).
std::ostream* set_runs_warn(std::ostream* sink);

#endif
