// The inspector quilp-ixc as a whole process: its summary and JSON output
// on the shipped compiled modules, failures in the middle of a run, usage
// errors, odd file names, and the queries that must never end the process.

#include "test_support.h"
#include "test_paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace quilp_test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

// Read when a test runs, after the command line gave the folders.
std::string examples_ixc() { return quilp_test::examples_dir() + "/ixc/"; }
std::string listing_data() { return quilp_test::data_dir() + "/ixc_listing/"; }

process_result inspect(const std::vector<std::string>& args, const scratch_dir& dir)
{
    return run_process(QUILP_IXC_BIN, args, dir.path());
}

// Copies the named files into the scratch directory so that the paths given
// to the inspector, and so its output, do not depend on the checkout.
void copy_in(const scratch_dir& dir, const std::string& from, const std::vector<std::string>& names)
{
    for (const std::string& n : names)
        write_file(dir.file(n), read_file(from + n));
}

const std::vector<std::string> example_files{"filter.ixc", "counter.ixc", "edges.ixc",
                                             "thermostat.ixc"};

// A module whose output o is the disjunction of inputs whose names are
// `name_length` characters long: its one-paths "x0", "!x0*x1", "!x0*!x1*x2"
// ... make a text of m k (k + 1) / 2 + k^2 + 2k - 3 characters for k inputs
// and variable names ("_s_" and the name) of m characters.
std::string disjunction_module(int inputs, std::size_t name_length)
{
    std::string text = "module: wide\n0 0\ninput:";
    for (int i = 0; i < inputs; ++i) {
        std::string name = "i" + std::to_string(i);
        name += std::string(name_length - name.size(), 'x');
        text += " " + name;
    }
    text += " ;\noutput: o ;\nconnexion: set reset rtl ;\n";
    text += "equation_def: " + std::to_string(inputs + 1) + "\n0 : -1 : 0 : 0 , 1\n";
    // Bottom up: the last input alone, then each earlier one or'ed in.
    text += "1 : " + std::to_string(2 * (inputs - 1)) + " : 0 : 0 , -1\n";
    for (int i = inputs - 2, node = 2; i >= 0; --i, ++node)
        text += std::to_string(node) + " : " + std::to_string(2 * i) + " : 0 : " + std::to_string(node - 1) + " , 1\n";
    text += "expressions:\n1 0 " + std::to_string(2 * inputs) + " : " + std::to_string(inputs) + " , 1 , ( )\nend:\n";
    return text;
}

// The bound on one function's text: 16,000,000 characters, measured
// before anything is written.
TEST(Inspector, AFunctionsTextIsBoundedBeforeItIsWritten)
{
    const auto length = [](std::uint64_t k, std::uint64_t m) { return m * k * (k + 1) / 2 + k * k + 2 * k - 3; };
    // 100 inputs; variable names of 3,166 characters give 15,999,497, of
    // 3,167 characters 16,004,547.
    ASSERT_LE(length(100, 3166), 16000000u);
    ASSERT_GT(length(100, 3167), 16000000u);
    scratch_dir dir;
    for (std::size_t m : {3166, 3167}) {
        write_file(dir.file("wide.ixc"), disjunction_module(100, m - 3));
        const process_result r = inspect({"--json", "wide.ixc"}, dir);
        ASSERT_EQ(r.status, 0) << r.err;
        const std::string::size_type at = r.out.find("\"function\": ");
        ASSERT_NE(at, std::string::npos);
        if (m == 3166) {
            const std::string::size_type start = at + 12;
            ASSERT_EQ(r.out[start], '"');
            const std::string::size_type end = r.out.find('"', start + 1);
            EXPECT_EQ(end - start - 1, length(100, m));
            EXPECT_EQ(r.out.compare(start + 1, 6, "_s_i0x"), 0);
        } else {
            EXPECT_EQ(r.out.compare(at + 12, 4, "null"), 0);
            // Well under what the function alone would have made.
            EXPECT_LT(r.out.size(), 8000000u);
        }
    }
}

TEST(Inspector, SummaryListsTypedInputsAndOutputs)
{
    scratch_dir dir;
    copy_in(dir, examples_ixc(), {"filter.ixc", "counter.ixc"});
    const process_result r = inspect({"filter.ixc", "counter.ixc"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, "module filter (filter.ixc)\ninput x: int\ninput enable: pure\noutput y: int\n\n"
                     "module counter (counter.ixc)\ninput tick: pure\noutput b0: pure\n"
                     "output b1: pure\noutput carry: pure\n");
    // each load leaves its trace beside the file
    EXPECT_TRUE(file_exists(dir.file("filter.ixc.log")));
}

TEST(Inspector, JsonOfTheShippedModules)
{
    scratch_dir dir;
    copy_in(dir, examples_ixc(), example_files);
    std::vector<std::string> args{"--json"};
    args.insert(args.end(), example_files.begin(), example_files.end());
    const process_result r = inspect(args, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    expect_golden("ixc_listing/examples.json", r.out);
}

TEST(Inspector, AFailedFileDoesNotStopTheNextOnes)
{
    scratch_dir dir;
    copy_in(dir, examples_ixc(), {"filter.ixc"});
    write_file(dir.file("bad.ixc"), "module: bad\n0 0\nconnexion: a b\n");
    const process_result r = inspect({"--json", "missing.ixc", "bad.ixc", "filter.ixc"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "FILE NOT FOUND !\n"
                     "line 4: syntax error, unexpected $end, expecting TOKEN_IDENT\n"
                     "ERROR about loading file : bad.ixc\n");
    EXPECT_THAT(r.out, StartsWith("[\n  {\n    \"file\": \"missing.ixc\",\n    \"error\": true\n  },\n"
                                  "  {\n    \"file\": \"bad.ixc\",\n    \"error\": true\n  },\n"
                                  "  {\n    \"file\": \"filter.ixc\",\n    \"module\": \"filter\",\n"));

    const process_result summary = inspect({"missing.ixc", "filter.ixc"}, dir);
    EXPECT_EQ(summary.status, 1);
    EXPECT_THAT(summary.out, StartsWith("missing.ixc: not loaded\n\nmodule filter (filter.ixc)\n"));
}

TEST(Inspector, AFatalLoadLeavesStandardOutputEmpty)
{
    scratch_dir dir;
    copy_in(dir, examples_ixc(), {"filter.ixc"});
    copy_in(dir, listing_data(), {"unknown_binding.ixc"});
    const process_result r = inspect({"--json", "filter.ixc", "unknown_binding.ixc"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_THAT(r.err, HasSubstr("unknown data signal:"));
}

TEST(Inspector, UsageAndItsErrors)
{
    scratch_dir dir;
    process_result r = inspect({"-h"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_THAT(r.out, StartsWith("usage: quilp-ixc [--json] FILE.ixc...\n"));
    EXPECT_EQ(r.err, "");

    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"--yaml", "a.ixc"}, {"--json"}, {}}) {
        r = inspect(args, dir);
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(r.out, "");
        EXPECT_THAT(r.err, StartsWith("quilp-ixc: "));
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1);
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

TEST(Inspector, FileNamesAreEscapedInJson)
{
    scratch_dir dir;
    const std::string odd = "we\"ird\\na\tme\xff\xc3\xa9.ixc";
    write_file(dir.file(odd), read_file(examples_ixc() + "filter.ixc"));
    const process_result r = inspect({"--json", "--", odd}, dir);
    EXPECT_EQ(r.status, 0);
    // quotes, backslashes and control characters escaped, a byte that is not
    // UTF-8 escaped, a UTF-8 letter kept
    EXPECT_THAT(r.out, HasSubstr("\"file\": \"we\\\"ird\\\\na\\u0009me\\u00ff\xc3\xa9.ixc\""));
}

TEST(Inspector, QueriesThatCannotBeAnsweredAreNull)
{
    scratch_dir dir;
    copy_in(dir, listing_data(), {"twice.ixc", "many_paths.ixc"});
    const process_result r = inspect({"--json", "twice.ixc", "many_paths.ixc"}, dir);
    EXPECT_EQ(r.status, 0);
    expect_golden("ixc_listing/null_answers.json", r.out);
}

}  // namespace
