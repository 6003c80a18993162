// quilp-ixc --project as a whole process: the shipped examples, projects and
// modules made stale on purpose (each kind of drift, as text and as JSON),
// what standard error carries, the exit statuses, and a module whose load
// ends the process.

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
std::string examples() { return quilp_test::examples_dir() + "/"; }
const std::vector<std::string> modules{"counter", "edges", "filter", "thermostat"};

process_result inspect(const std::vector<std::string>& args, const scratch_dir& dir)
{
    return run_process(QUILP_IXC_BIN, args, dir.path());
}

// The boiler example as shipped, in boiler/ beside ixc/.
void copy_boiler(const scratch_dir& dir)
{
    std::filesystem::create_directory(dir.file("boiler"));
    std::filesystem::create_directory(dir.file("ixc"));
    write_file(dir.file("boiler/boiler.bix"), read_file(examples() + "boiler/boiler.bix"));
    for (const std::string& m : modules)
        write_file(dir.file("ixc/" + m + ".ixc"), read_file(examples() + "ixc/" + m + ".ixc"));
}

// Replaces the one occurrence of `from` in the file.
void edit(const std::string& file, const std::string& from, const std::string& to)
{
    std::string text = read_file(file);
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    ASSERT_EQ(text.find(from, at + 1), std::string::npos) << from;
    write_file(file, text.replace(at, from.size(), to));
}

std::size_t count_of(const std::string& text, const std::string& piece)
{
    std::size_t n = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        ++n;
    return n;
}

TEST(InspectorProject, TheBoilerExampleMatchesTheShippedModules)
{
    scratch_dir dir;
    copy_boiler(dir);
    // Run from elsewhere than the project's folder: its runs' relative path
    // is taken from that folder.
    process_result r = inspect({"--project", "boiler/boiler.bix"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "");
    EXPECT_TRUE(file_exists(dir.file("boiler/boiler.bix.log")));
    for (const std::string& m : modules)
        EXPECT_TRUE(file_exists(dir.file("ixc/" + m + ".ixc.log"))) << m;
    r = inspect({"--json", "--project", dir.file("boiler/boiler.bix")}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "[]\n");
    EXPECT_EQ(r.err, "");
}

TEST(InspectorProject, TheOlderExamplesNameModulesThatAreNotShipped)
{
    scratch_dir dir;
    for (const char* name : {"cruise", "alarm", "top"})
        write_file(dir.file(std::string(name) + ".bix"), read_file(examples() + name + "/" + name + ".bix"));
    process_result r = inspect({"--project", "cruise.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "cruise.bix: run 0 `target_memory`: not loaded from /opt/ix/lib/target_memory.ixc\n"
                     "cruise.bix: run 1 `regulator`: not loaded from /opt/ix/lib/regulator.ixc\n");
    EXPECT_EQ(r.err, "FILE NOT FOUND !\nFILE NOT FOUND !\n");
    r = inspect({"--project", "alarm.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "alarm.bix: run 0 `filter`: not loaded from /lib/filter.ixc\n");
    r = inspect({"--project", "top.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "top.bix: run 0 `filter`: not loaded from /home/u/lib/filter.ixc\n");
}

TEST(InspectorProject, AStaleProjectReportsEachDriftOnceInOrder)
{
    scratch_dir dir;
    copy_boiler(dir);
    const std::string bix = dir.file("boiler/boiler.bix");
    edit(bix, "\"../ixc/\": thermostat: thermostat:", "\"../ixc/\": thermostat: thermo:");   // module name
    edit(bix, "tick : pure;", "clock : pure;");                                            // renamed
    edit(bix, "b1 : pure,\ncarry : pure;", "carry : pure,\nb1 : pure;");                    // moved twice
    edit(bix, "pressed : pure,\nreleased : pure,\n", "pressed : pure,\n");                  // added, moved
    edit(bix, "x : int,\nenable : pure;", "x : float,\nenable : pure,\ngain : int;");       // type, missing
    edit(bix, "\"alarms\" 26 4 : 0 : 1", "\"alarms\" 26 4 : 0 : 9");                         // run out of range
    edit(bix, "From: 7:0 To: 12:0", "From: 7:1 To: 12:0");                                  // no such port
    edit(bix, "level: int\n", "level: float\n");                                            // refused link
    const std::string expected =
        "boiler/boiler.bix: run 0 `thermo`: module says name `thermostat`\n"
        "boiler/boiler.bix: run 1 `counter`: input 0 `clock` renamed, module says `tick`\n"
        "boiler/boiler.bix: run 1 `counter`: output 1 `carry` moved, module says output 2\n"
        "boiler/boiler.bix: run 1 `counter`: output 2 `b1` moved, module says output 1\n"
        "boiler/boiler.bix: run 2 `edges`: output 1 `delta` moved, module says output 2\n"
        "boiler/boiler.bix: run 2 `edges`: output 1 `released` added by module, type pure\n"
        "boiler/boiler.bix: run 3 `filter`: input 0 `x` has type float, module says int\n"
        "boiler/boiler.bix: run 3 `filter`: input 2 `gain` missing from module\n"
        "boiler/boiler.bix: box 5 `alarms`: run 9 out of range (4 runs)\n"
        "boiler/boiler.bix: link 8: box 3 output 0 -> box 6 input 1: signal typed with: \"float\" versus signal "
        "typed with: \"int\"\n"
        "boiler/boiler.bix: link 11: box 7 output 1 -> box 12 input 0: box 7 has 1 output\n";
    process_result r = inspect({"--project", "boiler/boiler.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, expected);
    EXPECT_EQ(r.err, "");

    // The same findings as JSON, one object each, its message the line.
    r = inspect({"--json", "--project", "boiler/boiler.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "");
    EXPECT_THAT(r.out, StartsWith("[\n  {\"file\": \"boiler/boiler.bix\", \"kind\": \"module_name\", \"run\": 0, "
                                  "\"module_file\": \"boiler/../ixc/thermostat.ixc\", \"project\": \"thermo\", "
                                  "\"module\": \"thermostat\", \"message\": \"boiler/boiler.bix: run 0 `thermo`: "
                                  "module says name `thermostat`\"},\n"));
    EXPECT_EQ(r.out.substr(r.out.size() - 4), "}\n]\n");
    EXPECT_EQ(count_of(r.out, "{\"file\""), static_cast<std::size_t>(std::count(expected.begin(), expected.end(), '\n')));
    for (const char* piece :
         {"\"kind\": \"port_moved\", \"run\": 1, \"module_file\": \"boiler/../ixc/counter.ixc\", \"port\": "
          "\"output\", \"index\": 1, \"module_index\": 2, \"name\": \"carry\", \"message\"",
          "\"kind\": \"port_added\", \"run\": 2, \"module_file\": \"boiler/../ixc/edges.ixc\", \"port\": \"output\", "
          "\"index\": 1, \"name\": \"released\", \"module\": \"pure\", \"message\"",
          "\"kind\": \"box_range\", \"box\": 5, \"message\"",
          "\"kind\": \"link_type\", \"link\": 8, \"message\": \"boiler/boiler.bix: link 8: box 3 output 0 -> box 6 "
          "input 1: signal typed with: \\\"float\\\" versus signal typed with: \\\"int\\\"\"}"})
        EXPECT_THAT(r.out, HasSubstr(piece));
}

TEST(InspectorProject, ModulesThatDoNotLoadOrDeclareANameTwiceAreReported)
{
    scratch_dir dir;
    copy_boiler(dir);
    write_file(dir.file("ixc/counter.ixc"), "module: counter\n0 0\nconnexion: a b\n");
    edit(dir.file("ixc/filter.ixc"), "input: x : int enable ;", "input: x : int enable enable ;");
    const process_result r = inspect({"--project", "boiler/boiler.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "boiler/boiler.bix: run 1 `counter`: not loaded from boiler/../ixc/counter.ixc\n"
                     "boiler/boiler.bix: run 3 `filter`: module declares input `enable` twice, ports not compared\n");
    // the module loader's messages only
    EXPECT_EQ(r.err, "line 4: syntax error, unexpected $end, expecting TOKEN_IDENT\n"
                     "ERROR about loading file : boiler/../ixc/counter.ixc\n");
}

TEST(InspectorProject, AModuleWhoseLoadEndsTheProcessEndsTheRun)
{
    scratch_dir dir;
    copy_boiler(dir);
    edit(dir.file("ixc/filter.ixc"), "output: y : int ;", "output: y : int ;\nlocal: enable : int ;");
    for (const std::vector<std::string>& args : {std::vector<std::string>{"--project", "boiler/boiler.bix"},
                                                 {"--json", "--project", "boiler/boiler.bix"}}) {
        const process_result r = inspect(args, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_THAT(r.err, HasSubstr("Signal:getCurrentOccurrence: no current occurrence for the considered wood:"));
        EXPECT_THAT(r.err, HasSubstr("  for signal:enable\n"));
    }
}

TEST(InspectorProject, AProjectThatCannotBeReadIsOneFinding)
{
    scratch_dir dir;
    write_file(dir.file("bad.bix"), "Name: bad;\nType: a,;\n");
    process_result r = inspect({"--project", "bad.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "bad.bix: project not loaded\n");
    EXPECT_EQ(r.err, "syntax error, unexpected POINT_VIRGULE, expecting WORD\nERROR about loading file : bad.bix\n");
    r = inspect({"--json", "--project", "none.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "[\n  {\"file\": \"none.bix\", \"kind\": \"project_not_loaded\", \"message\": \"none.bix: project "
                     "not loaded\"}\n]\n");
    EXPECT_EQ(r.err, "FILE NOT FOUND !\n");
    // a folder is no project, and gets no trace beside it
    std::filesystem::create_directory(dir.file("p.bix"));
    r = inspect({"--project", "p.bix"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "p.bix: project not loaded\n");
    EXPECT_EQ(r.err, "");
    EXPECT_FALSE(file_exists(dir.file("p.bix.log")));
}

TEST(InspectorProject, UsageErrors)
{
    scratch_dir dir;
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"--project"}, {"--json", "--project"}, {"--project", "a.bix", "--project", "b.bix"},
          {"--project", "a.bix", "m.ixc"}}) {
        const process_result r = inspect(args, dir);
        EXPECT_EQ(r.status, 2) << args.size();
        EXPECT_EQ(r.out, "");
        EXPECT_THAT(r.err, StartsWith("quilp-ixc: "));
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1);
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

// Without --project as well: a name declared twice that the loader asks
// about ends the run before anything is printed.
TEST(InspectorProject, ANameDeclaredTwiceEndsTheInspectorAsTheLoader)
{
    scratch_dir dir;
    write_file(dir.file("d.ixc"), "module: d 0 0 input: a ; local: a : int ; connexion: s r t ; "
                                  "equation_def: 0 expressions: end:");
    for (const std::vector<std::string>& args : {std::vector<std::string>{"d.ixc"}, {"--json", "d.ixc"}}) {
        const process_result r = inspect(args, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_THAT(r.err, StartsWith("Signal:getCurrentOccurrence: no current occurrence for the considered wood:"));
        EXPECT_THAT(r.err, HasSubstr("  for signal:a\n"));
    }
}

}  // namespace
