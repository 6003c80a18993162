#ifndef EDITOR_WARN_H
#define EDITOR_WARN_H

#include <ostream>

// Where the editor writes its non-fatal messages (its trace lines and internal warnings). Standard error
// unless a stream is installed; looked up at each message, so a redirection
// of std::cerr's buffer is followed too. Fatal texts do not come here: they
// go to standard error just before the process ends.
std::ostream& editor_warn();

// Installs the stream (null restores standard error) and returns the
// previous one (null when it was standard error).
std::ostream* set_editor_warn(std::ostream* sink);

#endif
