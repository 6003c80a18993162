// The editor's file names: what Save and the exports write, and trimming.

#include "quilp_names.h"

#include <gtest/gtest.h>

namespace {

TEST(EditorFileNames, SaveAppendsBixOnlyWhenMissing)
{
    EXPECT_EQ(sauve_file_name("dir/p"), "dir/p.bix");
    EXPECT_EQ(sauve_file_name("dir/p.bix"), "dir/p.bix");
    EXPECT_EQ(sauve_file_name("p.ix"), "p.ix.bix");
    EXPECT_EQ(sauve_file_name("bix"), "bix.bix");
    EXPECT_EQ(sauve_module_name("p.bix"), "p");
    EXPECT_EQ(sauve_module_name("p.bix.bix"), "p.bix");
    EXPECT_EQ(sauve_module_name("p"), "p");
}

TEST(EditorFileNames, ExportsCutBixThenAppendTheirExtension)
{
    EXPECT_EQ(export_file_name("dir/p.bix", ".ix"), "dir/p.ix");
    EXPECT_EQ(export_file_name("dir/p.ix", ".ix"), "dir/p.ix");
    EXPECT_EQ(export_file_name("dir/p", ".ix"), "dir/p.ix");
    EXPECT_EQ(export_file_name("p.fig", ".ix"), "p.fig.ix");
    EXPECT_EQ(export_file_name("p.bix", ".fig"), "p.fig");
    EXPECT_EQ(export_file_name("p.fig", ".fig"), "p.fig");
    // Only the last four characters count: "p.ix.bix" gives "p.ix".
    EXPECT_EQ(export_file_name("p.ix.bix", ".ix"), "p.ix");
    EXPECT_EQ(export_file_name(".bix", ".fig"), ".fig");
}

TEST(EditorFileNames, TrimmingTakesBlanksAtBothEnds)
{
    EXPECT_EQ(trim_blanks("  a b \t\n"), "a b");
    EXPECT_EQ(trim_blanks(" \t "), "");
    EXPECT_EQ(trim_blanks("x"), "x");
}

}  // namespace
