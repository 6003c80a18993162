// The editor's entry to the project reader and the view's starting state.

#include "visu_net.h"
#include "test_paths.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <memory>

using namespace quilp_test;

namespace {

TEST(VisuNetReader, LoadedProjectIsViewedInMoveMode)
{
    scratch_dir dir;
    const std::string name = dir.file("c.bix");
    write_file(name, read_file(quilp_test::examples_dir() + "/cruise/cruise.bix"));
    std::unique_ptr<visu_net> v;
    const std::string err = stderr_of([&] { v.reset(parse_visu_net(name)); });
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(err.substr(0, err.find('\n')), "ouverture de " + name);
    EXPECT_EQ(v->mon_nom_module(), "cruise");
    EXPECT_EQ(v->nbr_black_box(), 10);
    EXPECT_EQ(v->nbr_transitions(), 9);
    EXPECT_EQ(v->mon_mode(), VISUNET_MODE_MOVE);
    EXPECT_EQ(v->mon_scale(), 30);
    EXPECT_EQ(visu_net().mon_mode(), VISUNET_MODE_INSERT);
}

TEST(VisuNetReader, FailuresAreReportedAfterTheOpeningLine)
{
    scratch_dir dir;
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse_visu_net(dir.file("none.bix")), nullptr); }),
              "ouverture de " + dir.file("none.bix") + "\nFILE NOT FOUND !\n");

    write_file(dir.file("bad.bix"), "Name: x y;");
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse_visu_net(dir.file("bad.bix")), nullptr); }), "ouverture de " + dir.file("bad.bix") +
                                       "\nsyntax error, unexpected WORD, expecting POINT_VIRGULE\n"
                                       "ERROR about loading file : " + dir.file("bad.bix") + "\n");
}

}  // namespace
