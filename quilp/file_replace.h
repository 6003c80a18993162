#ifndef QUILP_FILE_REPLACE_H
#define QUILP_FILE_REPLACE_H

// Writing a whole file so that a failure never costs the previous one: the
// text goes to a temporary file beside the target, which replaces the target
// (by renaming) only once everything is written and flushed to the disk.

#include <functional>
#include <iosfwd>
#include <string>

// Writes `target` with what `write` puts on its stream. True on success;
// otherwise the target is left as it was, the temporary file is removed and
// `error` tells why (the system's text for the failing step).
bool replace_file(const std::string& target, const std::function<void(std::ostream&)>& write,
                  std::string* error);

#endif
