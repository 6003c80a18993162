// The check that a project still matches its compiled modules: the
// comparison of each run with its loaded interface, the boxes and links
// against the loaded interfaces, the module files a project names, and the
// loads themselves.

#include "project_check.h"
#include "test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace quilp_test;
using testing::ElementsAre;

namespace {

using vars = std::list<bix_declaration_variables>;

bix_declaration_ixcmodule run_of(const std::string& module, const vars& inputs, const vars& outputs)
{
    return bix_declaration_ixcmodule("lib/", module, module, inputs, outputs);
}

loaded_run loaded(const bix_declaration_ixcmodule& interface)
{
    loaded_run r;
    r.state = loaded_run::loaded;
    r.file = "lib/" + interface.nom_fichier() + ".ixc";
    r.interface = interface;
    return r;
}

std::vector<std::string> messages(const std::vector<drift_finding>& findings)
{
    std::vector<std::string> m;
    for (const drift_finding& f : findings)
        m.push_back(f.message);
    return m;
}

// A project of one run `filter` (x: int, enable: pure -> y: int) fed by an
// int input terminal and a pure constant, its output to an int output.
struct ProjectCheck : testing::Test {
    bix_declaration_ixcmodule filter = run_of("filter", {{"x", "int"}, {"enable", "pure"}}, {{"y", "int"}});
    bix_tpen_fichier project{"p", {"int"}, {{"in", "int"}}, {{"out", "int"}}, {}, {filter}};

    void SetUp() override
    {
        project.parse_ixcmodules({black_box("in", 0, 0, BBOX_INPUT, 0), black_box("f", 10, 0, BBOX_INSTANCE, 0),
                                  black_box("out", 20, 0, BBOX_OUTPUT, 0), black_box("", 0, 5, BBOX_CONSTANT, 1)});
        project.parse_liens({bix_tpen_lien(0, 0, 1, 0), bix_tpen_lien(3, 0, 1, 1), bix_tpen_lien(1, 0, 2, 0)});
    }
};

TEST_F(ProjectCheck, AProjectThatMatchesItsModulesReportsNothing)
{
    EXPECT_TRUE(check_project(project, {loaded(filter)}).empty());
    // A project file writes a pure signal with an empty type.
    bix_tpen_fichier written("p", {}, {}, {}, {}, {run_of("filter", {{"x", "int"}, {"enable", ""}}, {{"y", "int"}})});
    EXPECT_TRUE(check_project(written, {loaded(filter)}).empty());
}

TEST_F(ProjectCheck, EachPortDriftIsOneFindingInPortOrder)
{
    const bix_declaration_ixcmodule kept =
        run_of("m", {{"x", "int"}, {"enable", "pure"}, {"rate", "int"}}, {{"y", "int"}, {"z", ""}});
    const bix_declaration_ixcmodule now =
        run_of("m", {{"enable", "pure"}, {"x", "float"}, {"speed", "float"}, {"extra", "bool"}}, {{"y", "int"}});
    const bix_tpen_fichier p("p", {}, {}, {}, {}, {kept});
    const std::vector<drift_finding> f = check_project(p, {loaded(now)});
    EXPECT_THAT(messages(f), ElementsAre("run 0 `m`: input 0 `x` moved, module says input 1",
                                         "run 0 `m`: input 0 `x` has type int, module says float",
                                         "run 0 `m`: input 1 `enable` moved, module says input 0",
                                         "run 0 `m`: input 2 `rate` renamed, module says `speed`",
                                         "run 0 `m`: input 2 `rate` has type int, module says float",
                                         "run 0 `m`: input 3 `extra` added by module, type bool",
                                         "run 0 `m`: output 1 `z` missing from module"));
    ASSERT_EQ(f.size(), 7u);
    EXPECT_EQ(f[0].kind, drift_kind::port_moved);
    EXPECT_EQ(std::make_pair(f[0].index, f[0].module_index), std::make_pair(0, 1));
    EXPECT_EQ(f[1].kind, drift_kind::port_type);
    EXPECT_EQ(std::make_pair(f[1].expected, f[1].found), std::make_pair(std::string("int"), std::string("float")));
    EXPECT_EQ(f[3].kind, drift_kind::port_renamed);
    EXPECT_EQ(std::make_pair(f[3].expected, f[3].found), std::make_pair(std::string("rate"), std::string("speed")));
    EXPECT_EQ(f[5].kind, drift_kind::port_added);
    EXPECT_EQ(std::make_tuple(f[5].port, f[5].index, f[5].name, f[5].found),
              std::make_tuple(std::string("input"), 3, std::string("extra"), std::string("bool")));
    EXPECT_EQ(f[6].kind, drift_kind::port_missing);
    EXPECT_EQ(std::make_tuple(f[6].port, f[6].index, f[6].name), std::make_tuple(std::string("output"), 1, std::string("z")));
    for (const drift_finding& each : f)
        EXPECT_EQ(std::make_tuple(each.run, each.module_file), std::make_tuple(0, std::string("lib/m.ixc")));

    // A name listed twice pairs with the module's ports of that name in order.
    const bix_tpen_fichier twice("p", {}, {}, {}, {}, {run_of("m", {{"a", ""}, {"a", "int"}}, {})});
    EXPECT_TRUE(check_project(twice, {loaded(run_of("m", {{"a", "pure"}, {"a", "int"}}, {}))}).empty());
}

TEST_F(ProjectCheck, RunsThatCannotBeComparedAreReportedAndTheirLinksLeftAlone)
{
    loaded_run absent;
    absent.file = "lib/filter.ixc";
    loaded_run twice = absent;
    twice.state = loaded_run::declared_twice;
    twice.twice_port = "input";
    twice.twice_name = "x";
    // A module whose interface changed would make every link fail; not
    // loaded or not compared, none is checked.
    EXPECT_THAT(messages(check_project(project, {absent})),
                ElementsAre("run 0 `filter`: not loaded from lib/filter.ixc"));
    EXPECT_THAT(messages(check_project(project, {twice})),
                ElementsAre("run 0 `filter`: module declares input `x` twice, ports not compared"));
    // A run without an entry counts as not loaded.
    EXPECT_EQ(check_project(project, {})[0].message, "run 0 `filter`: not loaded from ");

    const bix_declaration_ixcmodule renamed("lib/", "filter", "filter2", {{"x", "int"}, {"enable", "pure"}},
                                            {{"y", "int"}});
    const std::vector<drift_finding> f = check_project(project, {loaded(renamed)});
    ASSERT_EQ(f.size(), 1u);
    EXPECT_EQ(f[0].message, "run 0 `filter`: module says name `filter2`");
    EXPECT_EQ(std::make_pair(f[0].expected, f[0].found), std::make_pair(std::string("filter"), std::string("filter2")));
}

TEST_F(ProjectCheck, LinksAreCheckedWithTheTypeRuleAgainstTheLoadedInterfaces)
{
    // The module now takes a float x and gives a pure y: links 0 and 2 are
    // refused, link 1 (the constant into enable) still passes.
    const bix_declaration_ixcmodule now = run_of("filter", {{"x", "float"}, {"enable", "pure"}}, {{"y", "pure"}});
    const std::vector<drift_finding> f = check_project(project, {loaded(now)});
    EXPECT_THAT(messages(f),
                ElementsAre("run 0 `filter`: input 0 `x` has type int, module says float",
                            "run 0 `filter`: output 0 `y` has type int, module says pure",
                            "link 0: box 0 output 0 -> box 1 input 0: signal typed with: \"int\" versus signal typed "
                            "with: \"float\"",
                            "link 2: box 1 output 0 -> box 2 input 0: no typed signal versus signal typed with: \"int\""));
    EXPECT_EQ(f[2].kind, drift_kind::link_type);
    EXPECT_EQ(f[2].link, 0);
}

TEST_F(ProjectCheck, IndexesOutOfRangeAreReportedOnceAndStopFurtherChecks)
{
    project.parse_ixcmodules({black_box("in", 0, 0, BBOX_INPUT, 3), black_box("f", 10, 0, BBOX_INSTANCE, 0),
                              black_box("", 20, 0, BBOX_OUTPUT, -1), black_box("g", 10, 5, BBOX_INSTANCE, 2),
                              black_box("", 0, 5, BBOX_CONSTANT, 1), black_box("", 20, 5, BBOX_DONTCARE, 0)});
    project.parse_liens({bix_tpen_lien(0, 0, 1, 0),   // from a terminal out of range: no further check
                         bix_tpen_lien(4, 0, 7, 0),   // to a box that does not exist
                         bix_tpen_lien(-1, 0, 1, 0),  // an end that names no box
                         bix_tpen_lien(1, 1, 5, 0),   // the run has one output
                         bix_tpen_lien(4, 0, 1, 2),   // and two inputs
                         bix_tpen_lien(5, 0, 1, 1),   // a don't-care box has no output
                         bix_tpen_lien(1, 0, 5, 0),   // into a don't-care box: always right
                         bix_tpen_lien(4, 0, 3, 0)}); // to an instance of a run out of range
    const std::vector<drift_finding> f = check_project(project, {loaded(filter)});
    EXPECT_THAT(messages(f), ElementsAre("box 0 `in`: input 3 out of range (1 input)",
                                         "box 2: output -1 out of range (1 output)",
                                         "box 3 `g`: run 2 out of range (1 run)",
                                         "link 1: box 4 output 0 -> box 7 input 0: box 7 out of range (6 boxes)",
                                         "link 3: box 1 output 1 -> box 5 input 0: box 1 has 1 output",
                                         "link 4: box 4 output 0 -> box 1 input 2: box 1 has 2 inputs",
                                         "link 5: box 5 output 0 -> box 1 input 1: box 5 has 0 outputs"));
    EXPECT_EQ(std::make_pair(f[0].kind, f[0].box), std::make_pair(drift_kind::box_range, 0));
    EXPECT_EQ(std::make_pair(f[3].kind, f[3].link), std::make_pair(drift_kind::link_range, 1));
}

TEST(ProjectModuleFiles, PathAndFileNameJoinAsTheRunsMonitorJoinsThem)
{
    const bix_declaration_ixcmodule relative("../ixc/", "filter", "filter", {}, {});
    EXPECT_EQ(run_module_file(relative, "examples/boiler"), "examples/boiler/../ixc/filter.ixc");
    EXPECT_EQ(run_module_file(relative, ""), "../ixc/filter.ixc");
    // no separator is added between path and file name
    EXPECT_EQ(run_module_file(bix_declaration_ixcmodule("lib", "f", "f", {}, {}), "p"), "p/libf.ixc");
    EXPECT_EQ(run_module_file(bix_declaration_ixcmodule("", "f", "f", {}, {}), "p"), "p/f.ixc");
    EXPECT_EQ(run_module_file(bix_declaration_ixcmodule("/opt/ix/", "f", "f", {}, {}), "p"), "/opt/ix/f.ixc");
}

const std::string module_header = "module: m\n0 0\n";
const std::string module_tail = "connexion: set reset rtl ;\nequation_def: 0\nexpressions:\nend:\n";

TEST(ProjectModuleLoads, ALoadedRunTakesItsPortsAsTheRunsMonitorDoesWithoutItsTrace)
{
    scratch_dir dir;
    std::filesystem::create_directory(dir.file("lib"));
    write_file(dir.file("lib/m.ixc"), module_header + "input: a : int p ;\noutput: o ;\nlocal: l ;\n"
                                          "memorized:\np l ;\n" + module_tail);
    loaded_run r;
    EXPECT_EQ(stderr_of([&] { r = load_run(bix_declaration_ixcmodule("lib/", "m", "x", {}, {}), dir.path()); }), "");
    EXPECT_EQ(r.state, loaded_run::loaded);
    EXPECT_EQ(r.file, dir.file("lib/m.ixc"));
    // the run's path and file name, the module's name and ports, the
    // memorized copy among the inputs left out
    EXPECT_EQ(r.interface.chemin(), "lib/");
    EXPECT_EQ(r.interface.nom_module(), "m");
    EXPECT_EQ(r.interface.ma_table_inputs(), (std::vector<bix_declaration_variables>{{"a", "int"}}));
    EXPECT_EQ(r.interface.ma_table_outputs(), (std::vector<bix_declaration_variables>{{"o", "pure"}}));
}

}  // namespace
