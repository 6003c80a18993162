// From a loaded compiled module to the run declaration a project keeps.

#include "ixc_import.h"
#include "test_paths.h"
#include "test_support.h"

#include <gtest/gtest.h>

using namespace quilp_test;

namespace {

TEST(IxcImport, MemorizedCopiesAreLeftOutOfTheDeclarations)
{
    scratch_dir dir;
    write_file(dir.file("latch.ixc"), read_file(quilp_test::data_dir() + "/ixc_import/latch.ixc"));
    bix_declaration_ixcmodule run;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(declare_run(dir.path() + "/", "latch", run)); }),
              "integration d: int\nno integration d_pre: int\nintegration enable: pure\nintegration q: int\n");
    EXPECT_EQ(run.chemin(), dir.path() + "/");
    EXPECT_EQ(run.nom_fichier(), "latch");
    EXPECT_EQ(run.nom_module(), "latch");
    EXPECT_EQ(run.ma_table_inputs(), (std::vector<bix_declaration_variables>{
                                         {"d", "int"}, {"enable", "pure"}}));
    EXPECT_EQ(run.ma_table_outputs(), (std::vector<bix_declaration_variables>{{"q", "int"}}));
}

TEST(IxcImport, AModuleThatDoesNotLoadDeclaresNothing)
{
    scratch_dir dir;
    bix_declaration_ixcmodule run("/keep/", "f", "m", {}, {});
    EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(declare_run(dir.path() + "/", "absent", run)); }), "FILE NOT FOUND !\n");
    EXPECT_EQ(run.chemin(), "/keep/");
}

}  // namespace
