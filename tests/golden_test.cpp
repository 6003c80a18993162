// Every project file under tests/data/bix and every example project, and
// every compiled module under tests/data/ixc and examples/ixc, read as the
// batch run and the editor read them: the trace, standard error and (for
// projects) the generated module and drawing must equal the golden files
// kept beside them in tests/data (NAME.bix.log, NAME.err, NAME.ix, NAME.fig;
// NAME.ixc.log, NAME.ixc.err). Run a test program with --update to rewrite
// them, then read the change as a diff.

#include "bix_parser.h"
#include "ixc_parser.h"
#include "module.h"
#include "test_paths.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

using namespace quilp_test;

namespace {

std::vector<std::filesystem::path> cases(const std::vector<std::string>& folders, const std::string& extension)
{
    std::vector<std::filesystem::path> found;
    for (const std::string& folder : folders)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
            if (entry.path().extension() == extension)
                found.push_back(entry.path());
    std::sort(found.begin(), found.end(),
              [](const auto& a, const auto& b) { return a.filename() < b.filename(); });
    return found;
}

TEST(Goldens, ProjectFilesReadAndWritten)
{
    const std::vector<std::filesystem::path> files =
        cases({data_dir() + "/bix", examples_dir()}, ".bix");
    ASSERT_GE(files.size(), 6u);
    for (const std::filesystem::path& f : files) {
        const std::string stem = f.stem().string();
        SCOPED_TRACE(f.string());
        // Read from a scratch copy: the trace goes beside the file read.
        scratch_dir dir;
        const std::string copy = dir.file(stem + ".bix");
        write_file(copy, read_file(f.string()));
        std::unique_ptr<bix_tpen_fichier> p;
        std::string err = stderr_of([&] { p.reset(bix_read_file(copy)); });
        const std::string golden = "bix/" + stem;
        expect_golden(golden + ".bix.log", read_file(copy + ".log"));
        if (p) {
            std::string ix, fig;
            err += stderr_of([&] {
                ix = text_of([&](std::ostream& os) { p->put_ix(os, p->mon_nom_module()); });
                fig = text_of([&](std::ostream& os) { p->put_xfig(os, p->mon_nom_module()); });
            });
            expect_golden(golden + ".ix", ix);
            expect_golden(golden + ".fig", fig);
        }
        // What the reader and the writers say on standard error, in order.
        expect_golden(golden + ".err", err);
    }
}

TEST(Goldens, CompiledModulesRead)
{
    const std::vector<std::filesystem::path> files =
        cases({data_dir() + "/ixc", examples_dir() + "/ixc"}, ".ixc");
    ASSERT_GE(files.size(), 5u);
    for (const std::filesystem::path& f : files) {
        const std::string name = f.filename().string();
        SCOPED_TRACE(f.string());
        scratch_dir dir;
        const std::string copy = dir.file(name);
        write_file(copy, read_file(f.string()));
        std::string instance;
        std::unique_ptr<Module> m;
        const std::string err = stderr_of([&] { m.reset(parse_IXC(copy, instance)); });
        expect_golden("ixc/" + name + ".log", read_file(copy + ".log"));
        expect_golden("ixc/" + name + ".err", err);
    }
}

}  // namespace
