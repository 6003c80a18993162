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

#endif
