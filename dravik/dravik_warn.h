#ifndef DRAVIK_WARN_H
#define DRAVIK_WARN_H

#include <ostream>

// Where the module layer writes its non-fatal messages (the compiled-module reader's refusals, lookups that find nothing, the register warning). Standard error
// unless a stream is installed; looked up at each message, so a redirection
// of std::cerr's buffer is followed too. Fatal texts do not come here: they
// go to standard error just before the process ends.
std::ostream& dravik_warn();

// Installs the stream (null restores standard error) and returns the
// previous one (null when it was standard error).
std::ostream* set_dravik_warn(std::ostream* sink);

#endif
