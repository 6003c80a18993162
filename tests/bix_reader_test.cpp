// The project file reader: the format's accepted shapes, exact syntax error
// messages, the parse trace, and the file entry's messages.

#include "bix_parser.h"
#include "test_paths.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <locale>
#include <memory>
#include <sstream>

using namespace quilp_test;

namespace {

const std::string empty_sections =
    "Type: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\nBlackBox: ;\nLink: ;\n";
// Every section before the boxes, empty.
const std::string up_to_boxes = "Name: a;\nType: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\n";

struct read_result {
    std::unique_ptr<bix_tpen_fichier> project;
    std::string err;
    std::string log;
};

read_result read_text(const std::string& text, int explain = 0)
{
    std::istringstream in(text);
    std::ostringstream log;
    read_result r;
    r.err = stderr_of([&] { r.project.reset(parse_bix_stream(in, log, explain)); });
    r.log = log.str();
    return r;
}

// The first line a failed read writes on standard error.
std::string error_of(const std::string& text)
{
    read_result r = read_text(text);
    EXPECT_EQ(r.project, nullptr) << text;
    return r.err.substr(0, r.err.find('\n'));
}

TEST(BixReader, EmptyProjectHasEmptyTablesAndNoTraceAtLevelZero)
{
    read_result r = read_text("Name: a;\n" + empty_sections);
    ASSERT_NE(r.project, nullptr);
    const bix_tpen_fichier& p = *r.project;
    EXPECT_EQ(p.mon_nom_module(), "a");
    EXPECT_EQ((std::vector<int>{p.nbr_types(), p.nbr_inputs(), p.nbr_outputs(), p.nbr_locals(),
                                p.nbr_external_ixcmodules(), p.nbr_black_box(), p.nbr_transitions()}),
              std::vector<int>(7, 0));
    EXPECT_EQ(r.err, "");
    // The trace at level 1 is a golden file of each project under tests/data.
    EXPECT_EQ(r.log, "");
    EXPECT_NE(read_text("Name: a;\n" + empty_sections, 1).log, "");
}

TEST(BixReader, ReadsEveryElementInFileOrder)
{
    read_result r = read_text(
        "Name: top;\nType: int, speed;\nInput: go: , rate: int;\nOutput: alarm: ;\n"
        "Local: l1:int;\n"
        "Run: \"/home/u/lib/\": filter_f: filter:\nInput: x : , rate : int;\nOutput: y : ;\n,"
        "\"\": g: g: Input: ; Output: ;;\n"
        "BlackBox: \"f1\" 120 80 : 0 : 0, \"\" -1.5 2. : 1 : 1;\n"
        "Link: From: -1:0 To: 0:0 By: 40,80 120,80.25, From: 1:0 To: 0:1 By:;\n");
    ASSERT_NE(r.project, nullptr) << r.err;
    const bix_tpen_fichier& p = *r.project;
    using vars = std::vector<bix_declaration_variables>;
    EXPECT_EQ(p.ma_table_types(), (std::vector<std::string>{"int", "speed"}));
    EXPECT_EQ(p.ma_table_inputs(), (vars{{"go", ""}, {"rate", "int"}}));
    EXPECT_EQ(p.ma_table_outputs(), (vars{{"alarm", ""}}));
    EXPECT_EQ(p.ma_table_locals(), (vars{{"l1", "int"}}));
    ASSERT_EQ(p.nbr_external_ixcmodules(), 2);
    const bix_declaration_ixcmodule& run = p.ma_table_external_ixcmodules()[0];
    EXPECT_EQ(run, bix_declaration_ixcmodule("/home/u/lib/", "filter_f", "filter", {{"x", ""}, {"rate", "int"}},
                                             {{"y", ""}}));
    EXPECT_EQ(run.ma_table_inputs(), (vars{{"x", ""}, {"rate", "int"}}));
    EXPECT_EQ(run.ma_table_outputs(), (vars{{"y", ""}}));
    EXPECT_EQ(p.ma_table_bbox(), (std::vector<black_box>{black_box("f1", 120, 80, 0, 0), black_box("", -1.5, 2, 1, 1)}));
    ASSERT_EQ(p.nbr_transitions(), 2);
    EXPECT_EQ(p.ma_table_liens()[0].liste_positions(), (std::vector<double>{40, 80, 120, 80.25}));
    EXPECT_EQ(p.ma_table_liens()[1].mon_ident_ixcmodule_aval_input(), 1);
    EXPECT_TRUE(p.ma_table_liens()[1].liste_positions().empty());
    // diameters are normalised after reading
    EXPECT_DOUBLE_EQ(p.ma_table_bbox()[0].ma_largeur(), 6 / 3.4);
    // every run is reported on standard error as it is created
    EXPECT_EQ(r.err,
              "creation d'un run\"/home/u/lib/\": filter_f: filter: \nInput:\nx : ,\nrate : int;\n"
              "Output:\ny : ;\n\n"
              "creation d'un run\"\": g: g: \nInput:\n;\nOutput:\n;\n\n");
}

TEST(BixReader, ListsMayStartWithACommaTypesMayBeEmptyAndDecimalsEndWithTheDot)
{
    read_result r = read_text("Name: a;\nType: , a;\nInput: x: , y:;\nOutput: , o: ;\nLocal: ;\nRun: ;\n"
                              "BlackBox: \"b\" 1. -0.25 : 4 : -1;\nLink: From: 0:0 To: 0:0 By: -3,0.5;\n");
    ASSERT_NE(r.project, nullptr) << r.err;
    const bix_tpen_fichier& p = *r.project;
    EXPECT_EQ(p.ma_table_types(), (std::vector<std::string>{"a"}));
    EXPECT_EQ(p.ma_table_inputs(), (std::vector<bix_declaration_variables>{{"x", ""}, {"y", ""}}));
    EXPECT_EQ(p.nbr_outputs(), 1);
    EXPECT_EQ(p.ma_table_bbox()[0], black_box("b", 1, -0.25, 4, -1));
    EXPECT_EQ(p.ma_table_liens()[0].liste_positions(), (std::vector<double>{-3, 0.5}));
}

TEST(BixReader, SyntaxErrorsReadAsTheParserReportsThem)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        // a list may not end with a comma
        {"Name: a;\nType: a,;\n", "unexpected POINT_VIRGULE, expecting WORD"},
        // odd number of coordinates
        {up_to_boxes + "BlackBox: ;\nLink: From: 0:0 To: 0:0 By: 1,2 3;\n", "unexpected POINT_VIRGULE, expecting VIRGULE"},
        // an exponent is a word
        {up_to_boxes + "BlackBox: \"b\" 1e3 0 : 0 : 0;\nLink: ;\n", "unexpected WORD, expecting NUMBER or DNUMBER"},
        // sections are mandatory and ordered
        {"Name: a;\nType: ;\nInput: ;\nOutput: ;\nRun: ;\n", "unexpected RUN, expecting LOCAL"},
        // a box name must be quoted, a project name must not
        {up_to_boxes + "BlackBox: b 1 2 : 0 : 0;\nLink: ;\n", "unexpected WORD, expecting VIRGULE or POINT_VIRGULE"},
        {"Name: \"a\";\n", "unexpected STRING, expecting WORD"},
        // no blank between a keyword and its colon
        {"Name : a;\n", "unexpected WORD, expecting NAME"},
        // reserved keywords are tokens the grammar never accepts
        {"Name: a;\nSensor: ;\n", "unexpected SENSOR, expecting TYPE"},
        // nothing may follow the Link section; the end of input is "$end"
        {up_to_boxes + "BlackBox: ;\nLink: ;\n;", "unexpected POINT_VIRGULE, expecting $end"},
        {up_to_boxes + "BlackBox: ;\n", "unexpected $end, expecting LINK"},
        {"", "unexpected $end, expecting NAME"},
        // a dot cannot be part of a name
        {"Name: a.b;\n", "unexpected WORD, expecting POINT_VIRGULE"},
        // default reductions: the point list is closed before the error is
        // seen, only the link list's followers remain
        {up_to_boxes + "BlackBox: ;\nLink: From: 0:0 To: 0:0 By: To:", "unexpected TO, expecting VIRGULE or POINT_VIRGULE"},
        {up_to_boxes + "BlackBox: ;\nLink: From: 0:0 To: 0:0 By: 1 To:", "unexpected TO, expecting VIRGULE"},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(error_of(text), "syntax error, " + message);
}

TEST(BixReader, StrayCharactersAndCarriageReturnsGoToTheLog)
{
    read_result r = read_text("Name: a;\r\n#+.-\r\n" + empty_sections + "\xe9");
    ASSERT_NE(r.project, nullptr) << r.err;
    EXPECT_EQ(r.log, "\r#+.-\r\xe9");

    r = read_text("Name: a;\r\nType: t;\r\nInput: ;\r\nOutput: ;\r\nLocal: ;\r\nRun: ;\r\n"
                  "BlackBox: \"b\" 1 2 : 1 : 0;\r\nLink: ;\r\n");
    ASSERT_NE(r.project, nullptr) << r.err;
    EXPECT_EQ(r.project->nbr_black_box(), 1);
    EXPECT_EQ(r.log, std::string(8, '\r'));
}

TEST(BixReader, NumbersOutOfRangeNeitherCrashNorStopTheRead)
{
    read_result r = read_text(up_to_boxes + "BlackBox: \"b\" 99999999999999999999 " + std::string(400, '9') +
                              ".5 : 99999999999 : -99999999999;\nLink: From: 0:0 To: 0:0 By: 0.0" +
                              std::string(400, '0') + "1,-" + std::string(400, '9') + ".;\n");
    ASSERT_NE(r.project, nullptr) << r.err;
    const black_box& b = r.project->ma_table_bbox()[0];
    EXPECT_EQ(b.mon_tpe(), static_cast<int>(std::strtol("99999999999", nullptr, 10)));
    EXPECT_TRUE(std::isinf(b.ma_posy()));
    const std::vector<double>& pts = r.project->ma_table_liens()[0].liste_positions();
    EXPECT_EQ(pts[0], 0.0);
    EXPECT_TRUE(std::isinf(pts[1]) && pts[1] < 0);
}

TEST(BixReader, DecimalsIgnoreACommaDecimalLocale)
{
    scratch_dir locales;
    const std::string cmd = "localedef -i de_DE -f UTF-8 " + locales.file("de_DE.UTF-8") +
                            " >/dev/null 2>&1";
    if (std::system(cmd.c_str()) != 0)
        GTEST_SKIP() << "localedef cannot build a comma-decimal locale here";
    setenv("LOCPATH", locales.path().c_str(), 1);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    const std::locale previous = std::locale::global(std::locale(""));
    read_result r = read_text(up_to_boxes + "BlackBox: \"b\" 1.5 -2.25 : 1 : 0;\nLink: ;\n");
    std::ostringstream written;
    if (r.project)
        r.project->put_bix(written, "a");
    std::locale::global(previous);
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    ASSERT_NE(r.project, nullptr);
    EXPECT_DOUBLE_EQ(r.project->ma_table_bbox()[0].ma_posx(), 1.5);
    EXPECT_DOUBLE_EQ(r.project->ma_table_bbox()[0].ma_posy(), -2.25);
    EXPECT_NE(written.str().find("\"b\" 1.5 -2.25 : 1 : 0"), std::string::npos) << written.str();
}

// A missing file is reported and its log still created; a syntax error is
// followed by the loading error, the log holding the trace up to it.
TEST(BixReaderFile, MissingAndRefusedFilesAreReportedBesideTheirLog)
{
    scratch_dir dir;
    const std::string absent = dir.file("absent.bix");
    testing::internal::CaptureStdout();
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse(absent), nullptr); }), "FILE NOT FOUND !\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "reading " + absent + "\n");
    EXPECT_TRUE(quilp_test::file_exists(absent + ".log"));

    const std::string bad = dir.file("bad.bix");
    write_file(bad, "Name: a;\nType: ;\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse(bad), nullptr); }),
              "syntax error, unexpected $end, expecting INPUT\nERROR about loading file : " + bad + "\n");
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(read_file(bad + ".log"), "7 --> a\n5 --> liste types vide\n4 --> definition de la liste des types\n");
}

TEST(BixReaderFile, ParsersNestAndRestoreTheActiveOne)
{
    // A reader used while another parser object exists leaves it active again.
    class_bix_parser outer;
    read_result r = read_text("Name: a;\n" + empty_sections);
    EXPECT_NE(r.project, nullptr);
    r = read_text("Name: b;\n" + empty_sections);
    ASSERT_NE(r.project, nullptr);
    EXPECT_EQ(r.project->mon_nom_module(), "b");
}

}  // namespace
