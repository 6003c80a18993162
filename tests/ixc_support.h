#ifndef QUILP_IXC_SUPPORT_H
#define QUILP_IXC_SUPPORT_H

// Helpers shared by the compiled-module reader suites: loading a text, and
// assembling the mandatory parts of a file around the parts under test.

#include "dravik_support.h"
#include "test_paths.h"
#include "ixc_parser.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

namespace ixc_test {

using namespace quilp_test;

struct load_result {
    std::unique_ptr<Module> module;
    std::string err;
    std::string log;
};

// Loads `text` through the stream entry (named "t.ixc" in messages).
inline load_result load_text(const std::string& text, std::string instance = "", int explain = 1)
{
    std::istringstream in(text);
    std::ostringstream log;
    load_result r;
    testing::internal::CaptureStderr();
    r.module.reset(parse_IXC_stream(in, log, "t.ixc", instance, explain));
    r.err = testing::internal::GetCapturedStderr();
    r.log = log.str();
    return r;
}

// The same without capturing anything: for death tests, whose matcher
// reads the standard error of the dying process.
inline Module* load_uncaptured(const std::string& text, std::string instance = "")
{
    std::istringstream in(text);
    std::ostringstream log;
    return parse_IXC_stream(in, log, "t.ixc", instance);
}

// A whole file: header, the declarations, the connexion line, then `rest`
// (the equation section and whatever follows).
inline std::string module_text(const std::string& declarations, const std::string& rest)
{
    return "module: m\n0 0\n" + declarations + "connexion: set reset rtl ;\n" + rest;
}

// An equation section of `count` nodes.
inline std::string equations(int count, const std::string& nodes, const std::string& expressions)
{
    return "equation_def: " + std::to_string(count) + "\n" + nodes + "expressions:\n" + expressions + "end:\n";
}

inline std::string example_path(const std::string& name)
{
    return quilp_test::examples_dir() + "/ixc/" + name;
}

inline std::string data_path(const std::string& name)
{
    return quilp_test::data_dir() + "/ixc/" + name;
}

// Each case starts and ends with empty process-wide data tables.
using ReaderTest = dravik_test::DataTablesTest;

} // namespace ixc_test

#endif
