// Whatever file the editor is given, it never crashes: every project file of
// the test data and of the reader's fuzz corpus goes through the editor's
// own load path, then through the mouse in every mode, the monitors'
// results and Save.

#include "bdd_fatal.h"
#include "test_paths.h"
#include "editor_support.h"
#include "monitor_edits.h"
#include "test_support.h"
#include "visu_net.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <fcntl.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using namespace quilp_test;

namespace {

std::vector<std::string> files_in(const std::vector<std::string>& folders, const std::string& extension)
{
    std::vector<std::string> files;
    for (const std::string& dir : folders)
        for (const auto& f : std::filesystem::directory_iterator(dir))
            if (extension.empty() || f.path().extension() == extension)
                files.push_back(f.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> project_files()
{
    std::vector<std::string> files;
    for (const char* folder : {"/data/bix", "/fuzz/bix_corpus"}) {
        const std::string dir = quilp_test::data_dir() + "/.." + folder;
        for (const auto& f : std::filesystem::directory_iterator(dir))
            if (f.path().extension() != ".log" && f.path().extension() != ".ix" && f.path().extension() != ".fig")
                files.push_back(f.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

// Presses, drags and releases all over the sheet in every mode, forms
// answering with boxes whose idents name nothing.
void work_the_view(visu_net& v, scripted_dialogs& dialogs)
{
    for (int scale : {5, 30, 50}) {
        v.change_scale(scale);
        for (int mode = VISUNET_MODE_INSERT; mode <= VISUNET_MODE_DELETE; ++mode) {
            v.change_mode(mode);
            for (int x = -40; x < 1000; x += 97) {
                for (int y = -40; y < 600; y += 83) {
                    dialogs.forms.push_back({1, black_box("", 0, 0, (x + y) % 6 - 1, (x * y) % 7 - 2)});
                    v.motion(x, y);
                    v.push(x, y);
                    v.drag(x + 13, y + 7, 13, 7);
                    v.release(x + 13, y + 7);
                }
            }
        }
    }
    for (int k = 0; k < v.nbr_transitions(); ++k)
        v.trans_xforms_move(k, 100 + k, 200 - k);
}

TEST(EditorLoad, EveryProjectFileIsRefusedOrEditedSafely)
{
    const std::vector<std::string> files = project_files();
    ASSERT_GT(files.size(), 5u);
    int loaded = 0;
    for (const std::string& f : files) {
        SCOPED_TRACE(f);
        scratch_dir dir;
        write_file(dir.file("p.bix"), read_file(f));
        std::unique_ptr<visu_net> v;
        stderr_of([&] { v.reset(parse_visu_net(dir.file("p.bix"))); });
        if (!v)
            continue;
        ++loaded;
        scripted_dialogs dialogs;
        stderr_of([&] {
            v->apply_inputs({v->ma_table_inputs().begin(), v->ma_table_inputs().end()});
            v->apply_progs({v->ma_table_external_ixcmodules().begin(), v->ma_table_external_ixcmodules().end()});
            if (v->mon_nom_module().empty())
                v->def_nom_module("p");
            work_the_view(*v, dialogs);
            v->sauve(dir.file("q.bix"), "q");
        });
    }
    EXPECT_GT(loaded, 3);
}

// What the runs monitor makes of a module file, in a child process (a
// module may end the process, as its loader defines): 0 declared, 2 refused
// with its message box, 1 a defined fatal end; anything else is a fault.
int browse_in_child(const std::string& file)
{
    const pid_t child = fork();
    if (child != 0) {
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    // Out at once on a fatal end, leaving the leak check of a sanitizer run
    // to the parent.
    set_fatal_ending([] { _exit(1); });
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 2);
    scripted_dialogs dialogs;
    dialogs.files.push_back(file);
    prog_monitor_list runs({}, {});
    runs.browse();
    const bool added = runs.add(runs.modulename_field());
    _exit(added ? 0 : dialogs.shown.empty() ? 3 : 2);
}

TEST(EditorLoad, EveryModuleFileIsDeclaredRefusedOrEndsAsDefined)
{
    const std::string tests = quilp_test::data_dir() + "/..";
    const std::vector<std::string> files = files_in(
        {tests + "/data/ixc", tests + "/data/fatal", tests + "/fuzz/ixc_corpus", quilp_test::examples_dir() + "/ixc"}, "");
    std::map<int, int> outcomes;
    for (const std::string& f : files) {
        if (f.size() > 4 && f.compare(f.size() - 4, 4, ".log") == 0)
            continue;
        scratch_dir dir;
        write_file(dir.file("m.ixc"), read_file(f));
        const int outcome = browse_in_child(dir.file("m.ixc"));
        EXPECT_TRUE(outcome == 0 || outcome == 1 || outcome == 2) << f << ": " << outcome;
        ++outcomes[outcome];
    }
    // The shipped modules load; the fatal one ends; refused ones are shown.
    EXPECT_GE(outcomes[0], 4);
    EXPECT_GE(outcomes[1], 1);
    EXPECT_GE(outcomes[2], 1);
}

TEST(EditorLoad, APressWhoseReleaseNeverComesLeavesTheSheetUsable)
{
    const bix_tpen_fichier p("p", {}, {bix_declaration_variables("go", "pure")}, {}, {}, {});
    visu_net v(&p);
    v.add_fin_black_box(black_box("", 3, 3, BBOX_INPUT, 0));
    v.change_mode(VISUNET_MODE_INSERT);
    scripted_dialogs dialogs;
    // The form's window took the release: only the press reaches the view.
    v.push(500, 300);
    // The next press, on the terminal, and its release over empty space
    // make a default box as usual.
    v.push(90, 90);
    v.release(700, 400);
    ASSERT_EQ(v.nbr_black_box(), 2);
    EXPECT_EQ(v.ma_table_bbox()[1].mon_nom(), "inst0");
    EXPECT_EQ(dialogs.shown, std::vector<std::string>{"form -1"});
}

}  // namespace
