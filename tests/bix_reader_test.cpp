// The project file reader: the format's accepted shapes, exact syntax error
// messages, the parse trace, and the file entry's messages.

#include "bix_parser.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <locale>
#include <memory>
#include <sstream>

using quilp_test::read_file;
using quilp_test::scratch_dir;
using quilp_test::write_file;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

const std::string empty_sections =
    "Type: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\nBlackBox: ;\nLink: ;\n";

struct read_result {
    std::unique_ptr<bix_tpen_fichier> project;
    std::string err;
    std::string log;
};

read_result read_text(const std::string& text, int explain = 0)
{
    std::istringstream in(text);
    std::ostringstream log;
    CaptureStderr();
    read_result r;
    r.project.reset(parse_bix_stream(in, log, explain));
    r.err = GetCapturedStderr();
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

TEST(BixReader, EmptyProjectHasEmptyTables)
{
    read_result r = read_text("Name: a;\n" + empty_sections);
    ASSERT_NE(r.project, nullptr);
    EXPECT_EQ(r.project->mon_nom_module(), "a");
    EXPECT_EQ(r.project->nbr_types(), 0);
    EXPECT_EQ(r.project->nbr_inputs(), 0);
    EXPECT_EQ(r.project->nbr_outputs(), 0);
    EXPECT_EQ(r.project->nbr_locals(), 0);
    EXPECT_EQ(r.project->nbr_external_ixcmodules(), 0);
    EXPECT_EQ(r.project->nbr_black_box(), 0);
    EXPECT_EQ(r.project->nbr_transitions(), 0);
    EXPECT_EQ(r.err, "");
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
    EXPECT_EQ(p.ma_table_types(), (std::vector<std::string>{"int", "speed"}));
    ASSERT_EQ(p.nbr_inputs(), 2);
    EXPECT_EQ(p.type_input(0), "");
    EXPECT_EQ(p.nom_input(1), "rate");
    EXPECT_EQ(p.type_input(1), "int");
    EXPECT_EQ(p.type_local(0), "int");
    ASSERT_EQ(p.nbr_external_ixcmodules(), 2);
    const bix_declaration_ixcmodule& run = p.ma_table_external_ixcmodules()[0];
    EXPECT_EQ(run.chemin(), "/home/u/lib/");
    EXPECT_EQ(run.nom_fichier(), "filter_f");
    EXPECT_EQ(run.nom_module(), "filter");
    EXPECT_EQ(run.nb_entrees(), 2);
    EXPECT_EQ(run.tpe_entree(1), "int");
    EXPECT_EQ(run.nom_sortie(0), "y");
    ASSERT_EQ(p.nbr_black_box(), 2);
    const black_box& b = p.ma_table_bbox()[1];
    EXPECT_EQ(b.mon_nom(), "");
    EXPECT_DOUBLE_EQ(b.ma_posx(), -1.5);
    EXPECT_DOUBLE_EQ(b.ma_posy(), 2.0);
    EXPECT_EQ(b.mon_tpe(), 1);
    EXPECT_EQ(b.mon_ident(), 1);
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

TEST(BixReader, ListsMayStartWithACommaButNotEndWithOne)
{
    read_result r = read_text("Name: a;\nType: , a;\nInput: ;\nOutput: , o: ;\nLocal: ;\nRun: ;\n"
                              "BlackBox: ;\nLink: ;\n");
    ASSERT_NE(r.project, nullptr) << r.err;
    EXPECT_EQ(r.project->ma_table_types(), (std::vector<std::string>{"a"}));
    EXPECT_EQ(r.project->nbr_outputs(), 1);

    EXPECT_EQ(error_of("Name: a;\nType: a,;\n"), "syntax error, unexpected POINT_VIRGULE, expecting WORD");
}

TEST(BixReader, EmptyTypesAndDecimals)
{
    read_result r = read_text("Name: a;\nType: ;\nInput: x: , y:;\nOutput: ;\nLocal: ;\nRun: ;\n"
                              "BlackBox: \"b\" 1. -0.25 : 4 : -1;\nLink: From: 0:0 To: 0:0 By: -3,0.5;\n");
    ASSERT_NE(r.project, nullptr) << r.err;
    EXPECT_EQ(r.project->type_input(0), "");
    EXPECT_EQ(r.project->type_input(1), "");
    EXPECT_DOUBLE_EQ(r.project->ma_table_bbox()[0].ma_posx(), 1.0);
    EXPECT_DOUBLE_EQ(r.project->ma_table_bbox()[0].ma_posy(), -0.25);
    EXPECT_EQ(r.project->ma_table_liens()[0].liste_positions(), (std::vector<double>{-3, 0.5}));
}

TEST(BixReader, SyntaxErrorsReadAsTheParserReportsThem)
{
    const std::string head = "Name: a;\nType: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\n";
    // odd number of coordinates
    EXPECT_EQ(error_of(head + "BlackBox: ;\nLink: From: 0:0 To: 0:0 By: 1,2 3;\n"),
              "syntax error, unexpected POINT_VIRGULE, expecting VIRGULE");
    // an exponent is a word
    EXPECT_EQ(error_of(head + "BlackBox: \"b\" 1e3 0 : 0 : 0;\nLink: ;\n"),
              "syntax error, unexpected WORD, expecting NUMBER or DNUMBER");
    // sections are mandatory and ordered
    EXPECT_EQ(error_of("Name: a;\nType: ;\nInput: ;\nOutput: ;\nRun: ;\n"),
              "syntax error, unexpected RUN, expecting LOCAL");
    // a box name must be quoted, a project name must not
    EXPECT_EQ(error_of(head + "BlackBox: b 1 2 : 0 : 0;\nLink: ;\n"),
              "syntax error, unexpected WORD, expecting VIRGULE or POINT_VIRGULE");
    EXPECT_EQ(error_of("Name: \"a\";\n"), "syntax error, unexpected STRING, expecting WORD");
    // no blank between a keyword and its colon
    EXPECT_EQ(error_of("Name : a;\n"), "syntax error, unexpected WORD, expecting NAME");
    // reserved keywords are tokens the grammar never accepts
    EXPECT_EQ(error_of("Name: a;\nSensor: ;\n"), "syntax error, unexpected SENSOR, expecting TYPE");
    // nothing may follow the Link section; the end of input is "$end"
    EXPECT_EQ(error_of(head + "BlackBox: ;\nLink: ;\n;"), "syntax error, unexpected POINT_VIRGULE, expecting $end");
    EXPECT_EQ(error_of(head + "BlackBox: ;\n"), "syntax error, unexpected $end, expecting LINK");
    EXPECT_EQ(error_of(""), "syntax error, unexpected $end, expecting NAME");
    // a dot cannot be part of a name
    EXPECT_EQ(error_of("Name: a.b;\n"), "syntax error, unexpected WORD, expecting POINT_VIRGULE");
}

TEST(BixReader, DefaultReductionsDecideTheExpectedTokens)
{
    // the point list is closed before the error is seen: only the link list's followers remain
    EXPECT_EQ(error_of("Name: a;\nType: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\nBlackBox: ;\n"
                       "Link: From: 0:0 To: 0:0 By: To:"),
              "syntax error, unexpected TO, expecting VIRGULE or POINT_VIRGULE");
    EXPECT_EQ(error_of("Name: a;\nType: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\nBlackBox: ;\n"
                       "Link: From: 0:0 To: 0:0 By: 1 To:"),
              "syntax error, unexpected TO, expecting VIRGULE");
}

TEST(BixReader, StrayCharactersGoToTheLog)
{
    read_result r = read_text("Name: a;\r\n#+.-\r\n" + empty_sections + "\xe9");
    ASSERT_NE(r.project, nullptr) << r.err;
    EXPECT_EQ(r.log, "\r#+.-\r\xe9");
}

TEST(BixReader, CarriageReturnLineEndsParse)
{
    std::string text = "Name: a;\r\nType: t;\r\nInput: ;\r\nOutput: ;\r\nLocal: ;\r\nRun: ;\r\n"
                       "BlackBox: \"b\" 1 2 : 1 : 0;\r\nLink: ;\r\n";
    read_result r = read_text(text);
    ASSERT_NE(r.project, nullptr) << r.err;
    EXPECT_EQ(r.project->nbr_black_box(), 1);
    EXPECT_EQ(r.log, std::string(8, '\r'));
}

TEST(BixReader, TraceOfASmallFileIsExact)
{
    read_result r = read_text("Name: a;\nType: t;\nInput: i: ;\nOutput: ;\nLocal: ;\nRun: ;\n"
                              "BlackBox: \"b\" 1 2.5 : 1 : 0;\nLink: From: 0:0 To: 0:0 By: 3,4;\n",
                              1);
    ASSERT_NE(r.project, nullptr) << r.err;
    EXPECT_EQ(r.log,
              "7 --> a\n"
              "7 --> t\n"
              "5,2 --> liste types a un element\n"
              "4 --> definition de la liste des types\n"
              "7 --> i\n"
              "6 --> input/output bool\n"
              "5,2 --> liste inoutput a un element\n"
              "4 --> definition de la liste des inputs\n"
              "5 --> liste inoutput vide\n"
              "8 --> definition de la liste des outputs\n"
              "5 --> liste inoutput vide\n"
              "8 --> definition de la liste des outputs\n"
              "5 --> liste run vide\n"
              "9 --> definition de la liste des runs\n"
              "2 --> entete et table bdd cree\n"
              "10 --> \"b\"\n"
              "28 --> 1\n"
              "15 --> 1\n"
              "28,2 --> 2.5\n"
              "16 --> 2.5\n"
              "19 --> 1\n"
              "18 --> 0\n"
              "14 --> genere ixcmodule\n"
              "13,2 --> generation liste a un ixcmodule\n"
              "12 --> definition table ixcmodule\n"
              "27 --> 0\n"
              "28 --> 0\n"
              "27 --> 0\n"
              "28 --> 0\n"
              "28 --> liste vide\n"
              "28 --> 3\n"
              "28 --> 4\n"
              "28,3 --> ajout point liste points\n"
              "26 --> genere lien\n"
              "25,2 --> ajoute lien liste\n"
              "24 --> definition table lien\n"
              "11 --> corps cree\n"
              "1 --> projet cree\n");

    EXPECT_EQ(read_text("Name: a;\n" + empty_sections, 0).log, "");
}

TEST(BixReader, NumbersOutOfRangeNeitherCrashNorStopTheRead)
{
    read_result r = read_text("Name: a;\nType: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\n"
                              "BlackBox: \"b\" 99999999999999999999 " + std::string(400, '9') +
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
    read_result r = read_text("Name: a;\nType: ;\nInput: ;\nOutput: ;\nLocal: ;\nRun: ;\n"
                              "BlackBox: \"b\" 1.5 -2.25 : 1 : 0;\nLink: ;\n");
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

TEST(BixReaderFile, MissingFileIsReportedAndItsLogIsStillCreated)
{
    scratch_dir dir;
    const std::string name = dir.file("absent.bix");
    CaptureStderr();
    testing::internal::CaptureStdout();
    bix_tpen_fichier* p = parse(name);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "reading " + name + "\n");
    EXPECT_EQ(GetCapturedStderr(), "FILE NOT FOUND !\n");
    EXPECT_EQ(p, nullptr);
    EXPECT_TRUE(quilp_test::file_exists(name + ".log"));
}

TEST(BixReaderFile, SyntaxErrorIsFollowedByTheLoadingError)
{
    scratch_dir dir;
    const std::string name = dir.file("bad.bix");
    write_file(name, "Name: a;\nType: ;\n");
    CaptureStderr();
    testing::internal::CaptureStdout();
    std::unique_ptr<bix_tpen_fichier> p(parse(name));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(GetCapturedStderr(), "syntax error, unexpected $end, expecting INPUT\n"
                                   "ERROR about loading file : " + name + "\n");
    EXPECT_EQ(p, nullptr);
    EXPECT_EQ(read_file(name + ".log"),
              "7 --> a\n5 --> liste types vide\n4 --> definition de la liste des types\n");
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
