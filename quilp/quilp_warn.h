#ifndef QUILP_WARN_H
#define QUILP_WARN_H

#include <ostream>

// Where the project layer writes its non-fatal messages (the project reader's messages, out-of-range edits, routing warnings). Standard error
// unless a stream is installed; looked up at each message, so a redirection
// of std::cerr's buffer is followed too. Fatal texts do not come here: they
// go to standard error just before the process ends.
std::ostream& quilp_warn();

// Installs the stream (null restores standard error) and returns the
// previous one (null when it was standard error).
std::ostream* set_quilp_warn(std::ostream* sink);

#endif
