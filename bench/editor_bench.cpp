// Benchmark of the editor's view, run in an X server (see bench/run_editor):
//   bench_editor FILE.bix
// loads the project into a view attached to a window of the editor's size
// and prints, for scales 5, 15 and 30, the median time of a full redraw
// (until the X server has drawn it) over 50 runs, and the time of one
// pointer detection (the hit test with its red redraws) averaged over 10,000
// positions spread over the whole sheet, beside the plain hit test alone;
// then the same at scale 5 with every box packed into view.

#include "bix_parser.h"
#include "sheet_geometry.h"
#include "visu_net.h"

#include <FL/Fl.H>
#include <FL/forms.H>
#include <FL/x.H>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <vector>

namespace {

using seconds = std::chrono::duration<double>;

double now()
{
    return std::chrono::duration_cast<seconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: bench_editor FILE.bix" << std::endl;
        return 2;
    }
    std::unique_ptr<visu_net> view(parse_visu_net(argv[1]));
    if (!view)
        return 1;
    Fl_Window* window = fl_bgn_form(FL_NO_BOX, 1000, 600);
    fl_end_form();
    window->show();
    while (!window->visible())
        Fl::wait(0.1);
    view->fl_add_visu_net(window, 10, 60, 950, 500, 50, 30);
    Fl::check();
    XSync(fl_display, False);

    std::printf("%d boxes, %d links\n", view->nbr_black_box(), view->nbr_transitions());
    std::printf("%6s %14s %18s %18s\n", "scale", "redraw_ms", "detect_ms/point", "hittest_ms/point");
    for (int scale : {5, 15, 30, 0}) {
        if (scale == 0) {
            // Worst case: every box and link in view at scale 5, the boxes
            // packed on a 40 x 25 grid over the whole sheet.
            std::vector<black_box>& boxes = view->ma_table_bbox();
            for (std::size_t b = 0; b < boxes.size(); ++b) {
                boxes[b].change_ma_posx(2 + 4.75 * (b % 40));
                boxes[b].change_ma_posy(2 + 4.0 * (b / 40 % 25));
            }
            for (bix_tpen_lien& l : view->ma_table_liens())
                l.aligne_points(view.get());
            std::printf("packed:\n");
            scale = 5;
        }
        view->change_scale(scale);
        std::vector<double> runs;
        for (int i = 0; i < 50; ++i) {
            const double t0 = now();
            view->xforms_draw();
            XSync(fl_display, False);
            runs.push_back(now() - t0);
        }
        std::sort(runs.begin(), runs.end());
        const double redraw = runs[runs.size() / 2];

        // 10,000 pointer positions: a 100 x 100 grid over the sheet.
        double t0 = now();
        for (int i = 0; i < 100; ++i)
            for (int j = 0; j < 100; ++j)
                view->detect_object(10 + i * 950 / 100, 60 + j * 500 / 100);
        XSync(fl_display, False);
        const double detect = (now() - t0) / 10000;
        t0 = now();
        std::size_t hits = 0;
        const sheet_view v = view->vue();
        for (int i = 0; i < 100; ++i)
            for (int j = 0; j < 100; ++j)
                hits += objects_under(*view, v, 10 + i * 950 / 100, 60 + j * 500 / 100).size();
        const double hit = (now() - t0) / 10000;
        std::printf("%6d %14.3f %18.4f %18.4f   (%zu hits)\n", scale, redraw * 1e3, detect * 1e3, hit * 1e3, hits);
    }
    view.reset();
    delete window;
    return 0;
}
