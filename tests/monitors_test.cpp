// The declaration monitors without a window: the name rule, each monitor's
// list edits and refusals, the browser lines, the runs monitor's browse and
// load, and how the view applies a monitor's result to the boxes.

#include "monitor_edits.h"
#include "test_paths.h"
#include "ofl_dialogs.h"
#include "quilp_names.h"
#include "test_support.h"
#include "visu_net.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>

using namespace quilp_test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Dialogs that answer from a script and record what they were asked.
class scripted_dialogs : public ofl_dialogs {
public:
    scripted_dialogs() : previous(set_editor_dialogs(this)) {}
    ~scripted_dialogs() override { set_editor_dialogs(previous); }

    std::vector<std::string> messages;
    // Title, pattern and initial text of each file chooser opened.
    std::vector<std::string> choosers;
    // The chooser's answers in turn; an empty one cancels.
    std::deque<std::string> paths;

    // What the monitors were given, and what the user does in them: the
    // script gets the monitor's list and returns 1 for OK, 0 for cancel.
    std::string io_title;
    std::vector<std::string> io_types;
    std::list<std::string> in_use;
    std::function<int(io_monitor_list&)> io_script;
    std::function<int(type_monitor_list&)> type_script;
    std::function<int(prog_monitor_list&)> prog_script;

    void message(const std::string& text) override { messages.push_back(text); }
    void alert(const std::string& text) override { messages.push_back("alert: " + text); }
    bool file_chooser(const std::string& title, const std::string& pattern, const std::string& initial,
                      std::string* chosen) override
    {
        choosers.push_back(title + " " + pattern + " [" + initial + "]");
        if (paths.empty())
            return false;
        *chosen = paths.front();
        paths.pop_front();
        return !chosen->empty();
    }
    int io_monitor(Fl_Window*, const std::string& title, const std::vector<bix_declaration_variables>& table,
                   const std::vector<std::string>& types, const std::list<std::string>& names,
                   std::list<bix_declaration_variables>* result) override
    {
        io_title = title;
        io_types = types;
        in_use = names;
        return run(io_monitor_list(table, names), io_script, result);
    }
    int type_monitor(Fl_Window*, const std::vector<std::string>& table, const std::list<std::string>& names,
                     std::list<std::string>* result) override
    {
        in_use = names;
        return run(type_monitor_list(table, names), type_script, result);
    }
    int prog_monitor(Fl_Window*, const std::vector<bix_declaration_ixcmodule>& table,
                     const std::list<std::string>& names, std::list<bix_declaration_ixcmodule>* result) override
    {
        in_use = names;
        return run(prog_monitor_list(table, names), prog_script, result);
    }

private:
    ofl_dialogs* previous;

    template <class L, class R>
    static int run(L list, const std::function<int(L&)>& script, R* result)
    {
        const int ok = script ? script(list) : 0;
        if (ok)
            *result = list.result();
        return ok;
    }
};

using decls = std::vector<bix_declaration_variables>;

decls as_vector(const std::list<bix_declaration_variables>& l) { return {l.begin(), l.end()}; }

std::string example(const std::string& name) { return quilp_test::examples_dir() + "/ixc/" + name; }

TEST(NameRule, LettersDigitsAndUnderscoresNeverEndingWithAnUnderscore)
{
    for (const char* name : {"a", "_a1", "x_y", "Z", "a1", "_9", "ab_cd_2"})
        EXPECT_TRUE(checkvarname_with_pre_underscore(name)) << name;
    for (const char* name : {"", "a_", "_", "1a", "9", "\xc3\xa9", "caf\xc3\xa9", "\xc3\xa9t\xc3\xa9", "a-b", "a b",
                             "a.b", " a"})
        EXPECT_FALSE(checkvarname_with_pre_underscore(name)) << name;
    EXPECT_EQ(trim_blanks(" \t x_y \r\n"), "x_y");
    EXPECT_EQ(trim_blanks("  "), "");
}

TEST(MonitorLines, SignalLinesSplitAtTheirFirstColonAndAreTrimmed)
{
    EXPECT_EQ(io_line({"speed", "int"}), "int: speed");
    EXPECT_EQ(io_line({"go", "pure"}), "pure: go");
    EXPECT_EQ(io_line({"go", ""}), "pure: go");
    EXPECT_EQ(parse_io_line("int: speed"), bix_declaration_variables("speed", "int"));
    EXPECT_EQ(parse_io_line("  float  :\tt_1  "), bix_declaration_variables("t_1", "float"));
    EXPECT_EQ(parse_io_line("a: b: c"), bix_declaration_variables("b: c", "a"));
    EXPECT_EQ(parse_io_line(" alone "), bix_declaration_variables("alone", "pure"));
    const bix_declaration_variables v("x_y", "t2");
    EXPECT_EQ(parse_io_line(io_line(v)), v);
}

TEST(MonitorLines, RunLinesAndBrowsedPaths)
{
    const bix_declaration_ixcmodule run("/m/ixc/", "counter", "counter", {}, {});
    EXPECT_EQ(prog_line(run), "counter:counter --> /m/ixc/");
    const prog_line_parts parts = parse_prog_line(prog_line(run));
    EXPECT_EQ(parts.modulename, "counter");
    EXPECT_EQ(parts.filename, "counter");
    EXPECT_EQ(parts.path, "/m/ixc/");
    const prog_line_parts odd = parse_prog_line(" m : f-1  -->  rel/dir/ ");
    EXPECT_EQ(odd.modulename + "|" + odd.filename + "|" + odd.path, "m|f-1|rel/dir/");
    EXPECT_EQ(parse_prog_line("m:f --> ").path, "");

    struct split_case {
        const char* chosen;
        const char* path;
        const char* file;
    };
    for (const split_case& c : {split_case{"/a/b/c.ixc", "/a/b/", "c"}, split_case{"c.ixc", "", "c"},
                                split_case{"/x/y", "/x/", "y"}, split_case{"/x/y.ixc.ixc", "/x/", "y.ixc"},
                                split_case{"d.v/ixc", "d.v/", "ixc"}, split_case{"/x/.ixc", "/x/", ""},
                                split_case{"/top/", "/top/", ""}}) {
        const ixc_choice choice = split_ixc_path(c.chosen);
        EXPECT_EQ(choice.path, c.path) << c.chosen;
        EXPECT_EQ(choice.filename, c.file) << c.chosen;
    }
}

TEST(SignalMonitor, AddsTrimmedNamesUnderTheChosenTypeAndRefusesBadOrDeclaredOnes)
{
    scripted_dialogs dialogs;
    io_monitor_list list({{"go", ""}, {"speed", "int"}}, {});
    EXPECT_THAT(list.lines(), ElementsAre("pure: go", "int: speed"));

    EXPECT_TRUE(list.add("float", "  t_1 \t"));
    EXPECT_TRUE(list.add("pure", "_a1"));
    EXPECT_FALSE(list.add("int", "   "));
    EXPECT_FALSE(list.add("int", " a_ "));
    EXPECT_FALSE(list.add("int", "1a"));
    EXPECT_FALSE(list.add("int", "d\xc3\xa9j\xc3\xa0"));
    EXPECT_FALSE(list.add("float", "speed"));
    EXPECT_FALSE(list.add("int", " t_1"));
    EXPECT_THAT(dialogs.messages, ElementsAre("\"a_\"\n is not a correct variable name",
                                              "\"1a\"\n is not a correct variable name",
                                              "\"d\xc3\xa9j\xc3\xa0\"\n is not a correct variable name",
                                              "speed is already declared", "t_1 is already declared"));
    EXPECT_THAT(list.lines(), ElementsAre("pure: go", "int: speed", "float: t_1", "pure: _a1"));
    // The untouched entry keeps its empty type although its line shows "pure".
    EXPECT_EQ(as_vector(list.result()), (decls{{"go", ""}, {"speed", "int"}, {"t_1", "float"}, {"_a1", "pure"}}));
}

TEST(SignalMonitor, DeletesOnlyEntriesNotInUse)
{
    scripted_dialogs dialogs;
    io_monitor_list list({{"a", "pure"}, {"b", "int"}, {"c", "pure"}}, {"b"});
    EXPECT_FALSE(list.del(1));
    EXPECT_FALSE(list.del(-1));
    EXPECT_FALSE(list.del(3));
    EXPECT_THAT(dialogs.messages, ElementsAre("b is actually using: operation rejected ..."));
    EXPECT_TRUE(list.add("int", "d"));
    EXPECT_TRUE(list.del(0));
    EXPECT_TRUE(list.del(1));
    EXPECT_THAT(list.lines(), ElementsAre("int: b", "int: d"));
    EXPECT_EQ(as_vector(list.result()), (decls{{"b", "int"}, {"d", "int"}}));
    // A deleted name may be declared again, as a new entry.
    EXPECT_TRUE(list.add("int", "a"));
    EXPECT_EQ(as_vector(list.result()).back(), bix_declaration_variables("a", "int"));
    EXPECT_EQ(dialogs.messages.size(), 1u);
}

TEST(TypesMonitor, TypeNamesFollowTheRuleAndTypesInUseStay)
{
    scripted_dialogs dialogs;
    type_monitor_list list({"int", "float"}, {"pure", "float", "float"});
    EXPECT_TRUE(list.add(" speed_t "));
    EXPECT_FALSE(list.add("_"));
    EXPECT_FALSE(list.add("int"));
    EXPECT_FALSE(list.del(1));
    EXPECT_TRUE(list.del(0));
    EXPECT_THAT(dialogs.messages,
                ElementsAre("\"_\"\n is not a correct type name", "int is already declared",
                            "float is actually using by a I/O or a run: operation rejected ..."));
    EXPECT_THAT(list.lines(), ElementsAre("float", "speed_t"));
    EXPECT_THAT(list.result(), ElementsAre("float", "speed_t"));
}

// The runs monitor, on modules copied to a scratch directory (loading one
// writes its trace beside it).
class RunsMonitor : public testing::Test {
protected:
    scratch_dir dir;
    scripted_dialogs dialogs;

    std::string copy(const std::string& from, const std::string& name)
    {
        write_file(dir.file(name), read_file(from));
        return dir.file(name);
    }
};

TEST_F(RunsMonitor, BrowsingLoadsTheModuleAndAddDeclaresIt)
{
    dialogs.paths = {copy(example("counter.ixc"), "counter.ixc"), copy(example("filter.ixc"), "f.ixc")};
    prog_monitor_list list({}, {});
    const std::string err = stderr_of([&] { EXPECT_TRUE(list.browse()); });
    EXPECT_EQ(err, "integration tick: pure\nintegration b0: pure\nintegration b1: pure\nintegration carry: pure\n");
    EXPECT_TRUE(file_exists(dir.file("counter.ixc.log")));
    EXPECT_EQ(list.path_field(), dir.path() + "/");
    EXPECT_EQ(list.filename_field(), "counter");
    EXPECT_EQ(list.modulename_field(), "counter");
    EXPECT_TRUE(list.add(" counter "));
    EXPECT_EQ(list.modulename_field() + list.filename_field() + list.path_field(), "");
    EXPECT_THAT(list.lines(), ElementsAre("counter:counter --> " + dir.path() + "/"));

    // The second browse opens where the first one chose; the file name
    // differs from the module's name.
    stderr_of([&] { EXPECT_TRUE(list.browse()); });
    EXPECT_THAT(dialogs.choosers,
                ElementsAre("ixc file selection *.ixc []", "ixc file selection *.ixc [" + dir.path() + "/]"));
    EXPECT_EQ(list.modulename_field(), "filter");
    EXPECT_TRUE(list.add(list.modulename_field()));
    EXPECT_THAT(dialogs.messages, IsEmpty());

    const std::list<bix_declaration_ixcmodule> runs = list.result();
    ASSERT_EQ(runs.size(), 2u);
    const bix_declaration_ixcmodule& f = runs.back();
    EXPECT_EQ(f.chemin() + "|" + f.nom_fichier() + "|" + f.nom_module(), dir.path() + "/|f|filter");
    EXPECT_EQ(f.ma_table_inputs(), (decls{{"x", "int"}, {"enable", "pure"}}));
    EXPECT_EQ(f.ma_table_outputs(), (decls{{"y", "int"}}));
    EXPECT_EQ(runs.front().nb_sorties(), 3);
}

TEST_F(RunsMonitor, AddNeedsALoadedModuleAndAGoodNewName)
{
    const std::string counter = copy(example("counter.ixc"), "counter.ixc");
    prog_monitor_list list({bix_declaration_ixcmodule("/p/", "counter", "counter", {}, {})}, {"counter"});
    EXPECT_FALSE(list.add("counter"));
    dialogs.paths = {counter, counter, ""};
    stderr_of([&] { list.browse(); });
    EXPECT_FALSE(list.add("counter"));
    EXPECT_FALSE(list.add("counter_"));
    EXPECT_FALSE(list.add(""));
    EXPECT_TRUE(list.add("counter2"));
    // Adding used the module up: a second add needs another browse.
    EXPECT_FALSE(list.add("counter3"));
    EXPECT_FALSE(list.del(0));
    EXPECT_TRUE(list.del(1));
    // A cancelled chooser leaves the fields and the loaded module as they were.
    stderr_of([&] { list.browse(); });
    EXPECT_FALSE(list.browse());
    EXPECT_EQ(list.modulename_field(), "counter");
    EXPECT_TRUE(list.add("counter3"));
    EXPECT_THAT(dialogs.messages, ElementsAre("no module loaded: browse to a compiled module first",
                                              "counter is already declared",
                                              "\"counter_\"\n is not a correct RUN name",
                                              "no module loaded: browse to a compiled module first",
                                              "counter is actually using: operation rejected ..."));
    EXPECT_THAT(list.lines(), ElementsAre("counter:counter --> /p/", "counter3:counter --> " + dir.path() + "/"));
}

TEST_F(RunsMonitor, AModuleThatDoesNotLoadIsReportedAndCannotBeAdded)
{
    write_file(dir.file("syntax.ixc"), "module: m\n0 0\ninput: a ;;\nend:\n");
    const std::string refused = quilp_test::data_dir() + "/../fuzz/ixc_corpus/";
    dialogs.paths = {copy(example("counter.ixc"), "counter.ixc"), dir.file("absent.ixc"),
                     copy(refused + "refused_nodes.ixc", "nodes.ixc"),
                     copy(refused + "refused_evaltable.ixc", "evaltable.ixc"), dir.file("syntax")};
    prog_monitor_list list({}, {});
    stderr_of([&] { list.browse(); });
    // The failed browse forgets the module loaded before it.
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(list.browse()); }), "FILE NOT FOUND !\n");
    EXPECT_EQ(list.filename_field(), "absent");
    EXPECT_EQ(list.modulename_field(), "");
    EXPECT_FALSE(list.add("counter"));
    for (const char* name : {"nodes.ixc", "evaltable.ixc", "syntax.ixc"}) {
        const std::string err = stderr_of([&] { EXPECT_TRUE(list.browse()); });
        EXPECT_THAT(err, testing::EndsWith("ERROR about loading file : " + dir.file(name) + "\n")) << name;
    }
    EXPECT_FALSE(list.add("m"));
    EXPECT_THAT(list.lines(), IsEmpty());
    EXPECT_THAT(dialogs.messages,
                ElementsAre("ERROR about loading file : " + dir.file("absent.ixc"),
                            "no module loaded: browse to a compiled module first",
                            "ERROR about loading file : " + dir.file("nodes.ixc"),
                            "ERROR about loading file : " + dir.file("evaltable.ixc"),
                            "ERROR about loading file : " + dir.file("syntax.ixc"),
                            "no module loaded: browse to a compiled module first"));
}

// A project with inputs a, b, c and outputs; boxes showing b and c.
class MonitorResults : public testing::Test {
protected:
    visu_net view;
    scripted_dialogs dialogs;

    void SetUp() override
    {
        view.def_nom_module("p");
        view.add_type("int");
        view.add_fin_input({"a", "pure"});
        view.add_fin_input({"b", "int"});
        view.add_fin_input({"c", "pure"});
        view.add_fin_output({"o", "int"});
        view.add_fin_output({"q", "pure"});
        view.add_fin_black_box(black_box("", 1, 1, BBOX_INPUT, 2));
        view.add_fin_black_box(black_box("", 2, 2, BBOX_INPUT, 1));
        view.add_fin_black_box(black_box("", 3, 3, BBOX_OUTPUT, 1));
    }

    std::vector<int> idents() const
    {
        std::vector<int> ids;
        for (const black_box& b : view.ma_table_bbox())
            ids.push_back(b.mon_ident());
        return ids;
    }
};

TEST_F(MonitorResults, DeletingAnUnusedInputMovesTheBoxesAfterItDown)
{
    dialogs.io_script = [](io_monitor_list& list) {
        EXPECT_FALSE(list.del(1));
        EXPECT_TRUE(list.add("int", "d"));
        EXPECT_TRUE(list.del(0));
        return 1;
    };
    view.inputs_handling();
    EXPECT_EQ(dialogs.io_title, "INPUTS");
    EXPECT_THAT(dialogs.io_types, ElementsAre("int"));
    EXPECT_THAT(dialogs.in_use, ElementsAre("c", "b"));
    EXPECT_THAT(dialogs.messages, ElementsAre("b is actually using: operation rejected ..."));
    EXPECT_EQ(view.ma_table_inputs(), (decls{{"b", "int"}, {"c", "pure"}, {"d", "int"}}));
    EXPECT_EQ(idents(), (std::vector<int>{1, 0, 1}));

    // Cancelling changes nothing, whatever was done in the monitor.
    dialogs.io_script = [](io_monitor_list& list) {
        list.del(2);
        return 0;
    };
    view.inputs_handling();
    EXPECT_EQ(view.nbr_inputs(), 3);
    EXPECT_EQ(idents(), (std::vector<int>{1, 0, 1}));
}

TEST_F(MonitorResults, OutputsAndLocalsFollowTheirOwnTables)
{
    dialogs.io_script = [](io_monitor_list& list) {
        list.add("pure", "z");
        return list.del(0) ? 1 : 0;
    };
    view.outputs_handling();
    EXPECT_EQ(dialogs.io_title, "OUTPUTS");
    EXPECT_THAT(dialogs.in_use, ElementsAre("q"));
    EXPECT_EQ(view.ma_table_outputs(), (decls{{"q", "pure"}, {"z", "pure"}}));
    // The input boxes kept their idents, the output box followed "q".
    EXPECT_EQ(idents(), (std::vector<int>{2, 1, 0}));

    dialogs.io_script = [](io_monitor_list& list) { return list.add("int", "l") ? 1 : 0; };
    view.locals_handling();
    EXPECT_EQ(dialogs.io_title, "LOCALS");
    EXPECT_THAT(dialogs.in_use, IsEmpty());
    EXPECT_EQ(view.ma_table_locals(), (decls{{"l", "int"}}));
    EXPECT_EQ(idents(), (std::vector<int>{2, 1, 0}));
}

TEST_F(MonitorResults, EqualEntriesAreFollowedOneByOne)
{
    // Two equal declarations (a loaded project may hold them), each shown by
    // a box; deleting the unused one between them keeps each box on its own.
    view.apply_inputs({{"a", "pure"}, {"u", "pure"}, {"a", "pure"}});
    view.ma_table_bbox()[0].change_ident(2);
    view.ma_table_bbox()[1].change_ident(0);
    io_monitor_list list(view.ma_table_inputs(), view.names_in_use(BBOX_INPUT));
    EXPECT_TRUE(list.del(1));
    view.apply_inputs(list.result());
    EXPECT_EQ(idents(), (std::vector<int>{1, 0, 1}));
}

TEST_F(MonitorResults, TypesInUseStayAndRunsAreRenumbered)
{
    dialogs.type_script = [](type_monitor_list& list) {
        EXPECT_FALSE(list.del(0));
        return list.add("t2") ? 1 : 0;
    };
    view.types_handling();
    EXPECT_THAT(view.ma_table_types(), ElementsAre("int", "t2"));
    EXPECT_THAT(dialogs.messages, ElementsAre("int is actually using by a I/O or a run: operation rejected ..."));

    scratch_dir dir;
    write_file(dir.file("edges.ixc"), read_file(example("edges.ixc")));
    view.add_fin_progs_externes(bix_declaration_ixcmodule("/r/", "one", "one", {}, {}));
    view.add_fin_progs_externes(bix_declaration_ixcmodule("/r/", "two", "two", {{"x", "int"}}, {}));
    view.add_fin_black_box(black_box("", 4, 4, BBOX_INSTANCE, 1));
    dialogs.paths = {dir.file("edges.ixc")};
    dialogs.prog_script = [](prog_monitor_list& list) {
        EXPECT_FALSE(list.del(1));
        stderr_of([&] { list.browse(); });
        EXPECT_TRUE(list.add(list.modulename_field()));
        EXPECT_TRUE(list.del(0));
        return 1;
    };
    view.progs_handling();
    EXPECT_THAT(dialogs.in_use, ElementsAre("two"));
    ASSERT_EQ(view.nbr_external_ixcmodules(), 2);
    EXPECT_EQ(view.nom_module_external_ixcmodule(0), "two");
    EXPECT_EQ(view.ma_table_external_ixcmodules()[0].ma_table_inputs(), (decls{{"x", "int"}}));
    EXPECT_EQ(view.nom_module_external_ixcmodule(1), "edges");
    EXPECT_EQ(view.nb_inputs_external_ixcmodule(1), 2);
    EXPECT_EQ(idents(), (std::vector<int>{2, 1, 1, 0}));
    // The run just declared brings its port types into use.
    EXPECT_THAT(view.types_in_use(), testing::Contains("int"));
}

}  // namespace
