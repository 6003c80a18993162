// The inspector quilp-ixc as a whole process: its summary and JSON output
// on the shipped compiled modules, failures in the middle of a run, usage
// errors, odd file names, and the queries that must never end the process.

#include "test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace quilp_test;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string examples = std::string(QUILP_EXAMPLES) + "/ixc/";
const std::string data = std::string(QUILP_TEST_DATA) + "/ixc_listing/";

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

TEST(Inspector, SummaryListsTypedInputsAndOutputs)
{
    scratch_dir dir;
    copy_in(dir, examples, {"filter.ixc", "counter.ixc"});
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
    copy_in(dir, examples, example_files);
    std::vector<std::string> args{"--json"};
    args.insert(args.end(), example_files.begin(), example_files.end());
    const process_result r = inspect(args, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, read_file(data + "examples.json"));
}

TEST(Inspector, AFailedFileDoesNotStopTheNextOnes)
{
    scratch_dir dir;
    copy_in(dir, examples, {"filter.ixc"});
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
    copy_in(dir, examples, {"filter.ixc"});
    copy_in(dir, data, {"unknown_binding.ixc"});
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
    write_file(dir.file(odd), read_file(examples + "filter.ixc"));
    const process_result r = inspect({"--json", "--", odd}, dir);
    EXPECT_EQ(r.status, 0);
    // quotes, backslashes and control characters escaped, a byte that is not
    // UTF-8 escaped, a UTF-8 letter kept
    EXPECT_THAT(r.out, HasSubstr("\"file\": \"we\\\"ird\\\\na\\u0009me\\u00ff\xc3\xa9.ixc\""));
}

TEST(Inspector, QueriesThatCannotBeAnsweredAreNull)
{
    scratch_dir dir;
    copy_in(dir, data, {"twice.ixc", "many_paths.ixc"});
    const process_result r = inspect({"--json", "twice.ixc", "many_paths.ixc"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, read_file(data + "null_answers.json"));
}

}  // namespace
