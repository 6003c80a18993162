// The editor as a person uses it, in a private X server: open, name, load,
// draw, zoom, scroll, save, export, cancel, quit. What is drawn is checked
// against where the transform puts the model's boxes and links; screenshots
// of each step are kept under gui-shots/ in the build tree.

#include "bix_parser.h"
#include "test_paths.h"
#include "gui_support.h"
#include "test_support.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <sys/stat.h>

using namespace quilp_gui;
using namespace quilp_test;

namespace {

// The drawing area in the main window.
const int sheet_left = 10;
const int sheet_top = 60;
const int sheet_right = 960;
const int sheet_bottom = 560;

const std::string main_title = "QUILP: Linker Of Object Modules";

// The project in a file, read quietly (the reader reports each run it makes).
std::unique_ptr<bix_tpen_fichier> read_project(const std::string& path)
{
    std::ifstream in(path);
    std::ostringstream log;
    std::unique_ptr<bix_tpen_fichier> p;
    stderr_of([&] { p.reset(parse_bix_stream(in, log, 0)); });
    return p;
}

std::vector<std::string> example_projects()
{
    std::vector<std::string> found;
    for (const auto& dir : std::filesystem::directory_iterator(quilp_test::examples_dir()))
        for (const auto& f : std::filesystem::directory_iterator(dir.path()))
            if (f.path().extension() == ".bix")
                found.push_back(f.path().string());
    std::sort(found.begin(), found.end());
    return found;
}

bool on_sheet(double x, double y)
{
    return x >= sheet_left + 1 && x < sheet_right - 1 && y >= sheet_top + 1 && y < sheet_bottom - 1;
}

bool black_near(const image& img, double x, double y)
{
    const int cx = static_cast<int>(std::lround(x));
    const int cy = static_cast<int>(std::lround(y));
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (img.at(cx + dx, cy + dy) == black)
                return true;
    return false;
}

// What the drawing of `p` at scale s with offsets h, v should show: each
// visible box's frame (black bound, white inside), each visible stretch of
// a link black. The number of places checked and the faults found.
struct drawing_report {
    int checked = 0;
    std::vector<std::string> faults;
};

drawing_report check_drawing(const image& img, const bix_tpen_fichier& p, int s, int h, int v)
{
    drawing_report r;
    auto expect = [&](bool ok, const std::string& what) {
        ++r.checked;
        if (!ok)
            r.faults.push_back(what);
    };
    const std::vector<black_box>& boxes = p.ma_table_bbox();
    for (int i = 0; i < static_cast<int>(boxes.size()); ++i) {
        if (boxes[i].mon_ident() < 0)
            continue;
        const double w = p.bbox_largeur(i);
        const double ht = p.bbox_hauteur(i);
        const int left = static_cast<int>(std::trunc(s * boxes[i].ma_posx() + sheet_left - h - s * w / 2));
        const int top = static_cast<int>(std::trunc(s * boxes[i].ma_posy() + sheet_top - v - s * ht / 4));
        const int width = static_cast<int>(std::trunc(s * w));
        const int height = static_cast<int>(std::trunc(s * ht / 2));
        const std::string name = "box " + std::to_string(i);
        if (on_sheet(left, top + height / 2))
            expect(img.at(left, top + height / 2) == black, name + " left side");
        if (on_sheet(left + width / 2, top))
            expect(img.at(left + width / 2, top) == black, name + " top side");
        if (on_sheet(left + 2, top + 2) && width > 5 && height > 5)
            expect(img.at(left + 2, top + 2) == white, name + " inside");
    }
    const std::vector<bix_tpen_lien>& links = p.ma_table_liens();
    for (int k = 0; k < static_cast<int>(links.size()); ++k) {
        std::vector<std::pair<double, double>> line;
        double x = 0, y = 0;
        if (p.position_output(links[k].mon_ident_ixcmodule_amont(), links[k].mon_ident_ixcmodule_amont_output(), &x, &y))
            line.emplace_back(x, y);
        const std::vector<double>& pts = links[k].liste_positions();
        for (std::size_t j = 0; j + 1 < pts.size(); j += 2)
            line.emplace_back(pts[j], pts[j + 1]);
        if (p.position_input(links[k].mon_ident_ixcmodule_aval(), links[k].mon_ident_ixcmodule_aval_input(), &x, &y))
            line.emplace_back(x, y);
        for (std::size_t j = 0; j + 1 < line.size(); ++j) {
            const double x1 = s * line[j].first + sheet_left - h;
            const double y1 = s * line[j].second + sheet_top - v;
            const double x2 = s * line[j + 1].first + sheet_left - h;
            const double y2 = s * line[j + 1].second + sheet_top - v;
            if (std::hypot(x2 - x1, y2 - y1) < 4)
                continue;
            const double mx = (x1 + x2) / 2;
            const double my = (y1 + y2) / 2;
            if (on_sheet(mx, my))
                expect(black_near(img, mx, my), "link " + std::to_string(k) + " segment " + std::to_string(j));
        }
    }
    return r;
}

// Waits until the main window shows `p` drawn at (s, h, v); fails the test
// with the faults otherwise. Needs at least `least` places to check.
void expect_drawn(const quilp_app& app, const bix_tpen_fichier& p, int s, int h, int v, int least = 3)
{
    drawing_report last;
    const bool ok = eventually([&] {
        last = check_drawing(screenshot(app.window()), p, s, h, v);
        return last.faults.empty() && last.checked >= least;
    });
    EXPECT_TRUE(ok) << "scale " << s << " offsets " << h << ", " << v << ": " << last.checked << " checked, "
                    << testing::PrintToString(last.faults);
}

// The colour most of a slider's track shows along a line of n pixels.
long track_colour(const std::function<long(int)>& pixel, int n)
{
    const long a = pixel(2);
    const long b = pixel(n / 2);
    const long c = pixel(n - 3);
    return a == b || a == c ? a : b;
}

// The knob of a horizontal slider spanning [x0, x0 + w) from its top y0:
// where its first inner row first differs from the track.
int knob_left(const image& img, int x0, int w, int y0)
{
    const auto pixel = [&](int i) { return img.at(x0 + i, y0 + 1); };
    const long track = track_colour(pixel, w);
    for (int i = 1; i < w - 1; ++i)
        if (pixel(i) != track)
            return x0 + i;
    return -1;
}

// The knob of a vertical slider spanning [y0, y0 + h) from its left x0.
int knob_top(const image& img, int x0, int y0, int h)
{
    const auto pixel = [&](int i) { return img.at(x0 + 1, y0 + i); };
    const long track = track_colour(pixel, h);
    for (int i = 1; i < h - 1; ++i)
        if (pixel(i) != track)
            return y0 + i;
    return -1;
}

class EditorGui : public testing::Test {
protected:
    EditorGui()
    {
        for (const std::string& e : example_projects()) {
            const std::string copy = dir.file(std::filesystem::path(e).filename().string());
            write_file(copy, read_file(e));
            examples.push_back(copy);
        }
    }

    std::string cruise() const { return dir.file("cruise.bix"); }

    void load(quilp_app& app, const std::string& path)
    {
        app.file_menu(3);
        app.choose_file("bix file selection", path);
        settle(300);
    }

    // Answers the message box of the editor ("quilp") with Enter; when
    // `text` is given, the box must have shown it.
    void close_message_box(const quilp_app& app, const std::string& text = std::string())
    {
        const unsigned long box = find_window("quilp");
        ASSERT_NE(box, 0u) << "no message box";
        keep_screenshot(box, "message-box");
        move_to(box, 20, 20);
        keys({"Return"});
        EXPECT_TRUE(eventually([] { return !window_shown("quilp"); }));
        if (!text.empty()) {
            const std::vector<std::string> shown = app.boxes_shown();
            ASSERT_FALSE(shown.empty());
            EXPECT_EQ(shown.back(), text);
        }
    }

    scratch_dir dir;
    std::vector<std::string> examples;
};

TEST_F(EditorGui, OpensNamedAndDrawsEveryExampleWhereTheTransformPutsIt)
{
    quilp_app app(QUILP_BIN, dir.path());
    ASSERT_NE(app.window(), 0u);
    EXPECT_NE(tool({"xdotool", "getwindowgeometry", std::to_string(app.window())}).find("Geometry: 1000x600"),
              std::string::npos);
    keep_screenshot(app.window(), "empty");

    app.file_menu(2);
    ASSERT_NE(find_window("New project name"), 0u);
    type_text("p");
    keys({"Return"});
    EXPECT_TRUE(eventually([] { return !window_shown("New project name"); }));

    ASSERT_FALSE(examples.empty());
    for (const std::string& e : examples) {
        load(app, e);
        const std::unique_ptr<bix_tpen_fichier> p = read_project(e);
        ASSERT_TRUE(p) << e;
        const std::string stem = std::filesystem::path(e).stem().string();
        if (check_drawing(image{}, *p, 30, 0, 0).checked >= 3) {
            expect_drawn(app, *p, 30, 0, 0);
            keep_screenshot(app.window(), "load-" + stem);
        } else {
            // Nothing in sight at 30: look at it from scale 5, then come back.
            for (int i = 0; i < 6; ++i)
                click(app.window(), 395, 35);
            expect_drawn(app, *p, 5, 0, 0, 1);
            keep_screenshot(app.window(), "load-" + stem + "-scale-5");
            for (int i = 0; i < 6; ++i)
                click(app.window(), 435, 35);
        }
    }
    EXPECT_NE(app.error_text().find("ouverture de " + examples.back()), std::string::npos);

    // Escape does not close the main window; Quit ends with status 0.
    move_to(app.window(), 500, 300);
    keys({"Escape"});
    settle(300);
    EXPECT_TRUE(app.running());
    app.file_menu(7);
    EXPECT_EQ(app.wait_exit(), 0);
}

TEST_F(EditorGui, ZoomsThroughEveryScaleRescalingTheSlidersNotTheView)
{
    quilp_app app(QUILP_BIN, dir.path());
    load(app, cruise());
    const std::unique_ptr<bix_tpen_fichier> p = read_project(cruise());
    expect_drawn(app, *p, 30, 0, 0);

    // Knob positions at 0 and after 20 keyboard steps of a hundredth of the
    // range each (200): the scale of each slider in pixels per unit. Then
    // back to 60 horizontally and 30 vertically.
    const image start = screenshot(app.window());
    const int h0 = knob_left(start, 10, 950, 560);
    const int v0 = knob_top(start, 960, 60, 500);
    click(app.window(), h0 + 5, 570);
    keys(std::vector<std::string>(20, "Right"));
    click(app.window(), 970, v0 + 5);
    keys(std::vector<std::string>(20, "Down"));
    expect_drawn(app, *p, 30, 200, 200, 0);
    const image stepped = screenshot(app.window());
    const double h_pixels_per_unit = (knob_left(stepped, 10, 950, 560) - h0) / 200.0;
    const double v_pixels_per_unit = (knob_top(stepped, 960, 60, 500) - v0) / 200.0;
    ASSERT_GT(h_pixels_per_unit, 0.3);
    ASSERT_GT(v_pixels_per_unit, 0.3);
    keys(std::vector<std::string>(17, "Up"));
    click(app.window(), static_cast<int>(h0 + 200 * h_pixels_per_unit) + 5, 570);
    keys(std::vector<std::string>(14, "Left"));
    expect_drawn(app, *p, 30, 60, 30);
    auto slider_values = [&] {
        const image img = screenshot(app.window());
        return std::make_pair((knob_left(img, 10, 950, 560) - h0) / h_pixels_per_unit,
                              (knob_top(img, 960, 60, 500) - v0) / v_pixels_per_unit);
    };

    // "-" down to 5 and once more: the view keeps its offsets; the sliders
    // follow every step but the one from 8 to 5.
    const int down[] = {25, 20, 15, 10, 8, 5, 5};
    double h = 60, v = 30;
    for (int s : down) {
        click(app.window(), 395, 35);
        if (s != 5) {
            h = h * s / (s == 25 ? 30 : s == 20 ? 25 : s == 15 ? 20 : s == 10 ? 15 : 10);
            v = v * s / (s == 25 ? 30 : s == 20 ? 25 : s == 15 ? 20 : s == 10 ? 15 : 10);
        }
        expect_drawn(app, *p, s, 60, 30, 1);
        const auto values = slider_values();
        EXPECT_NEAR(values.first, h, 2.0) << "scale " << s;
        EXPECT_NEAR(values.second, v, 3.0) << "scale " << s;
    }
    keep_screenshot(app.window(), "scale-5");

    // "+" up to 50 and once more: every step rescales, 40 to 50 included.
    const int up[] = {8, 10, 15, 20, 25, 30, 40, 50, 50};
    int previous = 5;
    for (int s : up) {
        click(app.window(), 435, 35);
        if (s != previous) {
            h = h * s / previous;
            v = v * s / previous;
        }
        previous = s;
        expect_drawn(app, *p, s, 60, 30, 1);
        const auto values = slider_values();
        EXPECT_NEAR(values.first, h, 2.0) << "scale " << s;
        EXPECT_NEAR(values.second, v, 3.0) << "scale " << s;
    }
    keep_screenshot(app.window(), "scale-50");

    // A slider that moves gives the view its offset: the coarse and fine
    // horizontal sliders' sum, truncated.
    const std::pair<double, double> values = slider_values();
    const int knob = static_cast<int>(h0 + values.first * h_pixels_per_unit);
    click(app.window(), knob + 5, 570);
    keys({"Right"});
    const int h_now = static_cast<int>(std::trunc(values.first)) + 10;
    // The coarse value is h times a ratio: read it back within the knob's
    // precision, then through the drawing.
    bool found = false;
    for (int candidate = h_now - 3; candidate <= h_now + 3 && !found; ++candidate)
        found = check_drawing(screenshot(app.window()), *p, 50, candidate, 30).faults.empty();
    EXPECT_TRUE(found) << "the drawing did not follow the slider";
    keep_screenshot(app.window(), "scale-50-scrolled");
    app.file_menu(7);
    EXPECT_EQ(app.wait_exit(), 0);
}

TEST_F(EditorGui, SlidersShiftTheDrawingByTheirValue)
{
    quilp_app app(QUILP_BIN, dir.path());
    load(app, cruise());
    const std::unique_ptr<bix_tpen_fichier> p = read_project(cruise());
    const image start = screenshot(app.window());
    // Each keyboard step is a hundredth of the slider's range: 10 on the
    // coarse sliders, 100 on the fine ones.
    click(app.window(), knob_left(start, 10, 950, 560) + 5, 570);
    keys({"Right", "Right", "Right"});
    expect_drawn(app, *p, 30, 30, 0);
    click(app.window(), knob_left(start, 10, 970, 580) + 5, 590);
    keys({"Right"});
    expect_drawn(app, *p, 30, 130, 0, 1);
    keys({"Left"});
    expect_drawn(app, *p, 30, 30, 0);
    click(app.window(), 970, knob_top(start, 960, 60, 500) + 5);
    keys({"Down", "Down"});
    expect_drawn(app, *p, 30, 30, 20);
    click(app.window(), 990, knob_top(start, 980, 60, 520) + 5);
    keys({"Down"});
    expect_drawn(app, *p, 30, 30, 120, 1);
    keep_screenshot(app.window(), "scrolled");
    app.file_menu(7);
    EXPECT_EQ(app.wait_exit(), 0);
}

TEST_F(EditorGui, SavesAndExportsWhatTheBatchWritersWrite)
{
    quilp_app app(QUILP_BIN, dir.path());
    load(app, cruise());
    const std::unique_ptr<bix_tpen_fichier> p = read_project(cruise());
    mkdir(dir.file("out").c_str(), 0755);

    app.file_menu(4);
    app.choose_file("save bix file", dir.file("out/new.bix"));
    ASSERT_TRUE(eventually([&] { return file_exists(dir.file("out/new.ix")); }));
    settle(300);
    const std::string saved = read_file(dir.file("out/new.bix"));
    EXPECT_EQ(saved, text_of([&](std::ostream& os) { p->put_bix(os, p->mon_nom_module()); }));
    if (read_file(cruise()) == saved)
        SUCCEED() << "the example is in the writer's layout";

    app.file_menu_xfig();
    app.choose_file("save xfig file", dir.file("out/new"));
    ASSERT_TRUE(eventually([&] { return file_exists(dir.file("out/new.fig")); }));
    settle(300);

    // The batch writers on the saved project give the same bytes.
    mkdir(dir.file("batch").c_str(), 0755);
    write_file(dir.file("batch/new.bix"), saved);
    const process_result batch = run_process(QUILP_BIN, {"new.bix", "-xfig", "-ix"}, dir.file("batch"));
    EXPECT_EQ(batch.status, 0);
    EXPECT_EQ(read_file(dir.file("out/new.ix")), read_file(dir.file("batch/new.ix")));
    EXPECT_EQ(read_file(dir.file("out/new.fig")), read_file(dir.file("batch/new.fig")));
    const process_result svg = run_process(
        "/bin/sh", {"-c", "sed '/^\\\\001$/d' out/new.fig | fig2dev -L svg > out/new.svg"}, dir.path());
    EXPECT_EQ(svg.status, 0) << svg.err;
    EXPECT_GT(read_file(dir.file("out/new.svg")).size(), 100u);

    // A target that cannot be written (its folder is gone): a message box
    // names it and nothing else is written.
    app.file_menu(4);
    app.choose_file("save bix file", dir.file("out/gone/busy.bix"));
    close_message_box(app, "ERROR about writing file : " + dir.file("out/gone/busy.bix") + "\ncannot create a file in " +
                               dir.file("out/gone") + ": No such file or directory");
    EXPECT_FALSE(file_exists(dir.file("out/gone")));

    // Closing the window as a window manager would ends with status 0.
    tool({"xdotool", "windowclose", std::to_string(app.window())});
    EXPECT_EQ(app.wait_exit(), 0);
}

TEST_F(EditorGui, CancellingAnyChooserChangesNothing)
{
    quilp_app app(QUILP_BIN, dir.path());
    // An unnamed project cannot be saved or exported.
    app.file_menu(4);
    close_message_box(app, "NAME THE PROJECT FIRST!");
    app.file_menu_xfig();
    close_message_box(app, "NAME THE PROJECT FIRST!");

    load(app, cruise());
    const std::unique_ptr<bix_tpen_fichier> p = read_project(cruise());
    expect_drawn(app, *p, 30, 0, 0);
    const std::string before = app.error_text();
    const auto files = [&] {
        std::vector<std::string> names;
        for (const auto& f : std::filesystem::directory_iterator(dir.path()))
            names.push_back(f.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    };
    const std::vector<std::string> listed = files();

    app.file_menu(3);
    app.cancel_file("bix file selection");
    app.file_menu(4);
    app.cancel_file("save bix file");
    app.file_menu_xfig();
    app.cancel_file("save xfig file");
    expect_drawn(app, *p, 30, 0, 0);
    EXPECT_EQ(files(), listed);
    EXPECT_EQ(app.error_text(), before);
    app.file_menu(7);
    EXPECT_EQ(app.wait_exit(), 0);
}

TEST_F(EditorGui, AFailedLoadLeavesNoViewAndNewStillWorks)
{
    quilp_app app(QUILP_BIN, dir.path());
    write_file(dir.file("bad.bix"), "Name: x y;");
    load(app, dir.file("bad.bix"));
    close_message_box(app, "FILE NOT FOUND!");
    EXPECT_NE(app.error_text().find("ERROR about loading file : " + dir.file("bad.bix")), std::string::npos);
    app.io_menu(1);
    settle(300);
    EXPECT_NE(app.error_text().find("internal error: instance devrait etre defini ..."), std::string::npos);

    app.file_menu(1);
    app.file_menu(2);
    ASSERT_NE(find_window("New project name"), 0u);
    type_text("fresh");
    keys({"Return"});
    settle(300);
    app.file_menu(4);
    app.choose_file("save bix file", dir.file("fresh.bix"));
    EXPECT_TRUE(eventually([&] { return file_exists(dir.file("fresh.ix")); }));
    const std::unique_ptr<bix_tpen_fichier> saved = read_project(dir.file("fresh.bix"));
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->mon_nom_module(), "fresh");
    EXPECT_EQ(saved->nbr_black_box(), 0);

    // A name the project file could not hold is refused.
    app.file_menu(2);
    ASSERT_NE(find_window("New project name"), 0u);
    keys({"ctrl+a", "BackSpace"});
    type_text("two words");
    keys({"Return"});
    close_message_box(app, "\"two words\"\n is not a correct project name");
    app.file_menu(7);
    EXPECT_EQ(app.wait_exit(), 0);
}

TEST_F(EditorGui, TheBlackBoxFormPlacesABoxWhereThePressWas)
{
    quilp_app app(QUILP_BIN, dir.path());
    load(app, cruise());
    click(app.window(), 725, 35);  // "Ins"
    // Empty space low on the sheet: the form opens over the pointer.
    click(app.window(), 600, 500);
    const unsigned long form = find_window("Black Box Selection");
    ASSERT_NE(form, 0u);
    keep_screenshot(form, "form");
    click(form, 115, 125);  // "I"
    click_menu(form, 200, 165);  // the menu: its first input
    keys({"Down", "Return"});
    click(form, 65, 500);   // "Ok"
    EXPECT_TRUE(eventually([] { return !window_shown("Black Box Selection"); }));
    // The new box sits at the press position in raw window pixels / 30.
    std::unique_ptr<bix_tpen_fichier> p = read_project(cruise());
    p->add_fin_black_box(black_box("", 600 / 30, 500 / 30, BBOX_INPUT, 0));
    expect_drawn(app, *p, 30, 0, 0);
    keep_screenshot(app.window(), "placed");

    // "Ok" with nothing picked, and "Cancel": no box; the press's release
    // makes no default box either.
    click(app.window(), 300, 520);
    ASSERT_NE(find_window("Black Box Selection"), 0u);
    click(find_window("Black Box Selection"), 65, 500);
    EXPECT_TRUE(eventually([] { return !window_shown("Black Box Selection"); }));
    click(app.window(), 300, 520);
    ASSERT_NE(find_window("Black Box Selection"), 0u);
    click(find_window("Black Box Selection"), 160, 500);
    EXPECT_TRUE(eventually([] { return !window_shown("Black Box Selection"); }));

    app.file_menu(4);
    app.choose_file("save bix file", dir.file("after.bix"));
    ASSERT_TRUE(eventually([&] { return file_exists(dir.file("after.ix")); }));
    const std::unique_ptr<bix_tpen_fichier> saved = read_project(dir.file("after.bix"));
    ASSERT_TRUE(saved);
    ASSERT_EQ(saved->nbr_black_box(), p->nbr_black_box());
    const black_box& made = saved->ma_table_bbox().back();
    EXPECT_EQ(made.mon_tpe(), BBOX_INPUT);
    EXPECT_EQ(made.mon_ident(), 0);
    EXPECT_DOUBLE_EQ(made.ma_posx(), 20);
    EXPECT_DOUBLE_EQ(made.ma_posy(), 16);
    app.file_menu(7);
    EXPECT_EQ(app.wait_exit(), 0);
}

}  // namespace

// ---- Building a project from nothing, as a person would.

namespace {

// Radio buttons of the black box form, by the x of their centre.
const int kind_constant = 55;
const int kind_input = 115;
const int kind_output = 235;

// Lines of the standard error that trace the editing and the loading.
std::string trace_lines(const std::string& err)
{
    std::istringstream in(err);
    std::string out;
    for (std::string line; std::getline(in, line);)
        if (line.rfind("first_type_object_select", 0) == 0 || line.rfind("bad connection", 0) == 0 ||
            line.rfind("integration ", 0) == 0 || line.rfind("no integration ", 0) == 0)
            out += line + "\n";
    return out;
}

std::string replace_all(std::string text, const std::string& from, const std::string& to)
{
    for (std::string::size_type at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

unsigned long form_titled(const std::string& title)
{
    const unsigned long f = find_window(title);
    EXPECT_NE(f, 0u) << "no window titled " << title;
    return f;
}

// Types `name` into a monitor's name field and adds it with Enter.
void add_name(unsigned long form, const std::string& name)
{
    click(form, 200, 85);
    keys({"ctrl+a", "BackSpace"});
    type_text(name);
    keys({"Return"});
}

// Moves the signal monitor's type choice `steps` items down (up when
// negative).
void move_type_choice(unsigned long form, int steps)
{
    click_menu(form, 210, 125);
    keys(std::vector<std::string>(std::abs(steps), steps > 0 ? "Down" : "Up"));
    keys({"Return"});
}

void press_ok(unsigned long form, int x, int y, const std::string& title)
{
    click(form, x, y);
    EXPECT_TRUE(eventually([&] { return !window_shown(title); })) << title << " did not close";
}

// A press on empty space at (x, y), the kind (none: the preselected run
// instance) and the nth item of the menu in the black box form, then "Ok".
void place_box(const quilp_app& app, int x, int y, int kind, int item)
{
    click(app.window(), x, y);
    const unsigned long f = form_titled("Black Box Selection");
    if (kind)
        click(f, kind, 125);
    click_menu(f, 200, 165);
    keys(std::vector<std::string>(item, "Down"));
    keys({"Return"});
    press_ok(f, 65, 500, "Black Box Selection");
}

// A press at (x1, y1) dragged to (x2, y2) and released there.
void drag_to(unsigned long window, int x1, int y1, int x2, int y2)
{
    press(window, x1, y1);
    move_to(window, (x1 + x2) / 2, (y1 + y2) / 2);
    move_to(window, x2, y2);
    release();
}

}  // namespace

TEST_F(EditorGui, ATypicalProjectBuiltFromNothing)
{
    write_file(dir.file("filter.ixc"), read_file(quilp_test::examples_dir() + "/ixc/filter.ixc"));
    quilp_app app(QUILP_BIN, dir.path());
    const unsigned long w = app.window();

    app.file_menu(2);
    ASSERT_NE(find_window("New project name"), 0u);
    type_text("p");
    keys({"Return"});

    // A type, an input of that type and a pure one, an output, the run.
    app.types_menu();
    unsigned long f = form_titled("Types monitor");
    add_name(f, "int");
    keep_screenshot(f, "types");
    press_ok(f, 80, 300, "Types monitor");

    app.io_menu(1);
    f = form_titled("INPUTS");
    move_type_choice(f, 1);
    add_name(f, "v");
    move_type_choice(f, -1);
    add_name(f, "go");
    keep_screenshot(f, "inputs");
    press_ok(f, 80, 300, "INPUTS");

    app.io_menu(2);
    f = form_titled("OUTPUTS");
    move_type_choice(f, 1);
    add_name(f, "o");
    press_ok(f, 80, 300, "OUTPUTS");

    app.io_menu(4);
    f = form_titled("IXC modules");
    click(f, 365, 105);
    app.choose_file("ixc file selection", dir.file("filter.ixc"));
    click(f, 140, 180);
    keep_screenshot(f, "runs");
    press_ok(f, 140, 250, "IXC modules");

    // Boxes through the form, in insert mode: the run, the two inputs, the
    // output, an "Always Present" constant.
    click(w, 725, 35);
    place_box(app, 450, 240, 0, 1);
    place_box(app, 150, 210, kind_input, 1);
    place_box(app, 150, 330, kind_input, 2);
    place_box(app, 750, 240, kind_output, 1);
    place_box(app, 150, 420, kind_constant, 2);
    keep_screenshot(w, "placed");

    // Refused: a pure output to an int input, an input to an input, an
    // output to an output (which only the error stream reports).
    drag_to(w, 190, 391, 365, 293);
    close_message_box(app, "Bad data type between input and output!\n FORBIDDEN connection ...\n"
                           " no typed signal versus signal typed with: \"int\"");
    drag_to(w, 365, 308, 720, 301);
    close_message_box(app, "Input to Input connection FORBIDDEN!");
    drag_to(w, 200, 271, 552, 293);
    // Accepted: v to x, y to o drawn from o's end, the constant to enable.
    drag_to(w, 200, 271, 365, 293);
    drag_to(w, 720, 301, 552, 293);
    drag_to(w, 215, 481, 365, 308);
    keep_screenshot(w, "linked");

    // Move the run's box: its links follow. Then move v's link segment.
    click(w, 785, 35);
    drag_to(w, 500, 315, 500, 405);
    drag_to(w, 283, 340, 370, 340);
    keep_screenshot(w, "moved");

    // Delete the constant's link and the unused "go" terminal.
    click(w, 815, 35);
    click(w, 292, 450);
    click(w, 150, 385);
    keep_screenshot(w, "deleted");

    // An input in use cannot be deleted.
    app.io_menu(1);
    f = form_titled("INPUTS");
    click(f, 400, 30);
    click(f, 200, 170);
    close_message_box(app, "v is actually using: operation rejected ...");
    click(f, 200, 300);
    EXPECT_TRUE(eventually([] { return !window_shown("INPUTS"); }));

    app.file_menu(4);
    app.choose_file("save bix file", dir.file("p.bix"));
    ASSERT_TRUE(eventually([&] { return file_exists(dir.file("p.ix")); }));
    settle(300);
    const std::string data = quilp_test::data_dir() + "/gui/";
    EXPECT_EQ(read_file(dir.file("p.bix")), replace_all(read_file(data + "typical_use.bix"), "@DIR@", dir.path()));
    EXPECT_EQ(read_file(dir.file("p.ix")), replace_all(read_file(data + "typical_use.ix"), "@DIR@", dir.path()));
    EXPECT_EQ(trace_lines(app.error_text()), read_file(data + "typical_use.err"));
    EXPECT_EQ(app.boxes_shown().size(), 3u);

    // What was saved is drawn where the transform puts it, and reads back
    // with the batch reader.
    const std::unique_ptr<bix_tpen_fichier> saved = read_project(dir.file("p.bix"));
    ASSERT_TRUE(saved);
    expect_drawn(app, *saved, 30, 0, 0);
    const process_result batch = run_process(QUILP_BIN, {"p.bix", "-ix"}, dir.path());
    EXPECT_EQ(batch.status, 0);
    EXPECT_EQ(batch.out, "reading p.bix\ngeneration of p.ix\n");
    app.file_menu(7);
    EXPECT_EQ(app.wait_exit(), 0);
}

TEST_F(EditorGui, ARefusedModuleIsReportedAndOneEndingFatallyLeavesARecoveryFile)
{
    write_file(dir.file("m.ixc"), read_file(quilp_test::data_dir() + "/fatal/binding.ixc"));
    quilp_app app(QUILP_BIN, dir.path());
    app.file_menu(2);
    ASSERT_NE(find_window("New project name"), 0u);
    type_text("p");
    keys({"Return"});
    app.types_menu();
    unsigned long f = form_titled("Types monitor");
    add_name(f, "int");
    press_ok(f, 80, 300, "Types monitor");

    // A module the reader refuses: its message box, and the monitor goes on.
    write_file(dir.file("bad.ixc"), "module: m\n0 0\ninput: ;\n");
    app.io_menu(4);
    f = form_titled("IXC modules");
    click(f, 365, 105);
    app.choose_file("ixc file selection", dir.file("bad.ixc"));
    close_message_box(app, "ERROR about loading file : " + dir.file("bad.ixc"));
    EXPECT_TRUE(app.running());
    click(f, 365, 105);
    app.choose_file("ixc file selection", dir.file("m.ixc"));
    // The alert, then the end: status 1, the reporter's text, where the
    // project went.
    const std::string text = "Error: Illegal operation!\nbinding_declaration_parse::get_evalnode: node_not_found";
    close_message_box(app, text);
    EXPECT_EQ(app.wait_exit(), 1);
    const std::string err = app.error_text();
    EXPECT_NE(err.find(text + "\nquilp: the project was saved in p.recover.bix before ending\n"), std::string::npos)
        << err;
    const std::unique_ptr<bix_tpen_fichier> recovered = read_project(dir.file("p.recover.bix"));
    ASSERT_TRUE(recovered);
    EXPECT_EQ(recovered->mon_nom_module(), "p");
    EXPECT_EQ(recovered->ma_table_types(), std::vector<std::string>{"int"});
}
