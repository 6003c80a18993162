// The quilp command as a whole process: dispatch by argument count, help and
// version texts, batch options, derived names, exit statuses, and which
// files are written.

#include "quilp_names.h"
#include "test_paths.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace quilp_test;

namespace {

const std::string version = "3.2.0-8";

process_result quilp(const std::vector<std::string>& args, const scratch_dir& dir)
{
    return run_process(QUILP_BIN, args, dir.path());
}

std::string example(const std::string& name)
{
    return read_file(quilp_test::examples_dir() + "/" + name);
}

std::vector<std::string> files_in(const scratch_dir& dir)
{
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::recursive_directory_iterator(dir.path()))
        if (e.is_regular_file())
            names.push_back(std::filesystem::relative(e.path(), dir.path()).string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(CommandLine, HelpVersionAndNoArgument)
{
    scratch_dir dir;
    process_result r = quilp({"-h"}, dir);
    EXPECT_EQ(r.status, 0);
    expect_golden("cli/help.txt", r.out);
    EXPECT_EQ(r.err, "");

    r = quilp({"-v"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "  QUILP: Linker Of Object Module version " + version + "\n\n");
    EXPECT_TRUE(files_in(dir).empty());

    // The editor, which must not wait for a display it cannot open: it says
    // so and ends with status 1.
    r = run_process(QUILP_BIN, {}, dir.path(), {"DISPLAY="});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "quilp: Can't open display: \n");
    EXPECT_TRUE(files_in(dir).empty());
}

// A lone file name generates nothing and reads nothing; an unknown option
// ends the run before any file is read.
TEST(CommandLine, NoOptionOrAnUnknownOneReadsNothing)
{
    scratch_dir dir;
    write_file(dir.file("a.bix"), example("top/top.bix"));
    process_result r = quilp({"a.bix"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "  No generation because no option ...\n\n");
    EXPECT_EQ(files_in(dir), std::vector<std::string>{"a.bix"});

    for (const char* option : {"-esterel", "-XFIG", "ix"}) {
        r = quilp({"a.bix", "-xfig", option, "-ix"}, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err, std::string("`") + option +
                             "' unknown option: write quilp -h to known the valid list\n\n");
    }
    EXPECT_EQ(files_in(dir), std::vector<std::string>{"a.bix"});
}

// The drawing alone, then both: the drawing comes first whatever the option
// order, and the trace of a project read is always written beside it.
TEST(CommandLine, GeneratedFilesAndTheirOrder)
{
    scratch_dir dir;
    write_file(dir.file("a.bix"), example("alarm/alarm.bix"));
    process_result r = quilp({"a.bix", "-xfig", "-xfig"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "reading a.bix\ngeneration of a.fig\n");
    EXPECT_EQ(files_in(dir), (std::vector<std::string>{"a.bix", "a.bix.log", "a.fig"}));

    write_file(dir.file("a.bix"), example("cruise/cruise.bix"));
    r = quilp({"a.bix", "-ix", "-xfig"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "reading a.bix\ngeneration of a.fig\ngeneration of a.ix\n");
    const std::string cruise = quilp_test::data_dir() + "/bix/cruise.";
    EXPECT_EQ(read_file(dir.file("a.ix")), read_file(cruise + "ix"));
    EXPECT_EQ(read_file(dir.file("a.fig")), read_file(cruise + "fig"));
    EXPECT_EQ(read_file(dir.file("a.bix.log")), read_file(cruise + "bix.log"));
}

TEST(CommandLine, TheProjectIsAlwaysReadFromTheBaseNameDotBix)
{
    scratch_dir dir;
    std::filesystem::create_directory(dir.file("dir.v2"));
    write_file(dir.file("dir.v2/a.bix"), example("alarm/alarm.bix"));
    process_result r = quilp({"dir.v2/a", "-ix"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "reading dir.v2/a.bix\ngeneration of dir.v2/a.ix\n");
    EXPECT_TRUE(file_exists(dir.file("dir.v2/a.ix")));

    write_file(dir.file("a.txt"), "not a project");
    write_file(dir.file("a.bix"), example("alarm/alarm.bix"));
    r = quilp({"a.txt", "-ix"}, dir);
    EXPECT_EQ(r.out, "reading a.bix\ngeneration of a.ix\n");
    EXPECT_TRUE(file_exists(dir.file("a.ix")));
    EXPECT_FALSE(file_exists(dir.file("a.txt.log")));
}

TEST(CommandLine, UnreadableProjectsGenerateNothingAndExitWithZero)
{
    scratch_dir dir;
    process_result r = quilp({"missing", "-ix", "-xfig"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "reading missing.bix\n");
    EXPECT_EQ(r.err, "FILE NOT FOUND !\n");
    EXPECT_EQ(files_in(dir), std::vector<std::string>{"missing.bix.log"});

    // A folder named as the project opens but cannot be read: no file either.
    std::filesystem::create_directory(dir.file("folder.bix"));
    r = quilp({"folder", "-ix"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "FILE NOT FOUND !\n");
    EXPECT_FALSE(file_exists(dir.file("folder.ix")));
    std::filesystem::remove(dir.file("folder.bix"));
    std::filesystem::remove(dir.file("folder.bix.log"));

    write_file(dir.file("bad.bix"), "Name: bad;\nType: a,;\n");
    r = quilp({"bad.bix", "-ix", "-xfig"}, dir);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "reading bad.bix\n");
    EXPECT_EQ(r.err, "syntax error, unexpected POINT_VIRGULE, expecting WORD\n"
                     "ERROR about loading file : bad.bix\n");
    EXPECT_FALSE(file_exists(dir.file("bad.ix")));
    EXPECT_FALSE(file_exists(dir.file("bad.fig")));
}

TEST(FileNames, ExtensionOfTheLastComponentOnly)
{
    EXPECT_EQ(supress_filename_extension("a.bix"), "a");
    EXPECT_EQ(supress_filename_extension("a.b.bix"), "a.b");
    EXPECT_EQ(supress_filename_extension("dir.v2/a"), "dir.v2/a");
    EXPECT_EQ(supress_filename_extension("dir.v2/a.txt"), "dir.v2/a");
    EXPECT_EQ(supress_filename_extension("a."), "a");
    EXPECT_EQ(supress_filename_extension("."), ".");
    EXPECT_EQ(supress_filename_extension("x/.."), "x/..");
    EXPECT_EQ(supress_filename_extension("noext"), "noext");

    const batch_names n("p/q.r.bix");
    EXPECT_EQ(n.project, "p/q.r.bix");
    EXPECT_EQ(n.log, "p/q.r.log");
    EXPECT_EQ(n.drawing, "p/q.r.fig");
    EXPECT_EQ(n.module, "p/q.r.ix");
}

}  // namespace
