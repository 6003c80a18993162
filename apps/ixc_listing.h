#ifndef QUILP_IXC_LISTING_H
#define QUILP_IXC_LISTING_H

// What the inspector `quilp-ixc` prints of a loaded compiled module: one JSON
// object per file, or a short summary for people. Its queries never end the
// process: a signal without an occurrence in the module's wood, a function
// with too many one-paths, a missing record are written as null.

#include <iosfwd>
#include <string>
#include <vector>

class Module;

// The per-file translation tables of the reader: entry i is the global id of
// the file's type (method, constant) number i.
struct ixc_file_ids {
    std::vector<int> types;
    std::vector<int> methods;
    std::vector<int> constants;
};

// A JSON string literal for `text`: quotes, backslashes and control
// characters escaped; bytes that are not UTF-8 written as \u00XX.
std::string json_string(const std::string& text);

// The object of one loaded file, indented by `indent` blanks.
void write_module_json(std::ostream& os, const std::string& file, Module& module,
                       const ixc_file_ids& ids, int indent);
// The object of a file that did not load.
void write_failure_json(std::ostream& os, const std::string& file, int indent);

// The module name and one line per input and output: "input NAME: TYPE".
void write_module_summary(std::ostream& os, const std::string& file, Module& module);

#endif
