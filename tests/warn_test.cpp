// Each library's warning stream: standard error by default, any stream once
// installed, standard error again once removed; the project check gathers
// its readers' messages through them.

#include "bdd_warn.h"
#include "bddpp.h"
#include "bix_parser.h"
#include "dravik_warn.h"
#include "editor_warn.h"
#include "exceptions.h"
#include "ixc_parser.h"
#include "module.h"
#include "project_check.h"
#include "quilp_warn.h"
#include "runs_warn.h"
#include "test_support.h"
#include "visu_net.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>

using namespace quilp_test;

namespace {

struct sink_case {
    const char* library;
    std::ostream* (*install)(std::ostream*);
    std::function<void(const std::string& missing)> speak;
    std::string said;    // with `missing` standing for a file that does not exist
    std::string others;  // what the layers below write after it
};

TEST(WarningStreams, GoToStandardErrorUntilAStreamIsInstalled)
{
    scratch_dir dir;
    const std::string missing = dir.file("none");
    const std::vector<sink_case> cases = {
        {"bdd", set_bdd_warn, [](const std::string&) { bddpp_manager().Bdd_var_by_name("q"); },
         "calling bddpp_manager::Bdd_var_by_name() with name= q :not found!\n", ""},
        {"dravik", set_dravik_warn, [](const std::string& f) { std::string i; delete parse_IXC(f, i); },
         "FILE NOT FOUND !\n", ""},
        {"dravik message", set_dravik_warn, [](const std::string&) { message_report("register r"); },
         "register r\n", ""},
        {"quilp", set_quilp_warn, [](const std::string& f) { delete bix_read_file(f); }, "FILE NOT FOUND !\n", ""},
        {"editor", set_editor_warn, [](const std::string& f) { delete parse_visu_net(f); },
         "ouverture de " + missing + "\n", "FILE NOT FOUND !\n"},
    };
    for (const sink_case& c : cases) {
        SCOPED_TRACE(c.library);
        EXPECT_EQ(stderr_of([&] { c.speak(missing); }), c.said + c.others);
        std::ostringstream captured;
        EXPECT_EQ(c.install(&captured), nullptr);
        EXPECT_EQ(stderr_of([&] { c.speak(missing); }), c.others);
        EXPECT_EQ(captured.str(), c.said);
        EXPECT_EQ(c.install(nullptr), &captured);
        EXPECT_EQ(stderr_of([&] { c.speak(missing); }), c.said + c.others);
    }
}

TEST(WarningStreams, TheProjectCheckRepeatsWhatTheReaderSaidOnItsOwnStream)
{
    scratch_dir dir;
    std::ostringstream runs, quilp;
    set_runs_warn(&runs);
    set_quilp_warn(&quilp);
    const std::vector<drift_finding> found = check_project_file(dir.file("none.bix"));
    set_runs_warn(nullptr);
    set_quilp_warn(nullptr);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].kind, drift_kind::project_not_loaded);
    // The reader's own stream is borrowed during the read and given back.
    EXPECT_EQ(quilp.str(), "");
    EXPECT_EQ(runs.str(), "FILE NOT FOUND !\n");
}

}  // namespace
