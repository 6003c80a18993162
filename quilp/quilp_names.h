#ifndef QUILP_NAMES_H
#define QUILP_NAMES_H

#include <string>

// Drops the extension of the last path component: the text from its last
// "." to the end. A component without a dot is returned unchanged, and so is
// a component that is only dots ("." and ".." name directories).
std::string supress_filename_extension(const std::string& name);

// The names a batch run derives from its file argument.
struct batch_names {
    explicit batch_names(const std::string& argument);

    std::string base;     // the argument without its extension
    std::string project;  // base + ".bix": always the file read
    std::string log;      // base + ".log": derived, never written
    std::string drawing;  // base + ".fig"
    std::string module;   // base + ".ix"
};

// The text without blanks (spaces, tabs, line ends) at either end.
std::string trim_blanks(const std::string& text);

// The rule for signal, type, run and project names: an ASCII letter or "_"
// first, then letters, digits or "_", ending with a letter or a digit (so a
// one-character name is a letter). The name is taken as given: callers trim.
bool checkvarname_with_pre_underscore(const std::string& name);

// The editor's file names. Saving writes `path` with ".bix" appended unless
// it already ends so, under the module name `name` without a trailing ".bix".
// The exports cut a trailing ".bix" from the path and append their own
// extension unless the path already ends with it.
std::string sauve_file_name(const std::string& path);
std::string sauve_module_name(const std::string& name);
std::string export_file_name(const std::string& path, const std::string& extension);

#endif
