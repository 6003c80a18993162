#ifndef BDD_WARN_H
#define BDD_WARN_H

#include <ostream>

// Where the BDD package writes its non-fatal messages (misuse warnings and out-of-range lookups). Standard error
// unless a stream is installed; looked up at each message, so a redirection
// of std::cerr's buffer is followed too. Fatal texts do not come here: they
// go to standard error just before the process ends.
std::ostream& bdd_warn();

// Installs the stream (null restores standard error) and returns the
// previous one (null when it was standard error).
std::ostream* set_bdd_warn(std::ostream* sink);

#endif
