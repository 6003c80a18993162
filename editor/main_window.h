#ifndef EDITOR_MAIN_WINDOW_H
#define EDITOR_MAIN_WINDOW_H

// The editor's main window: menus, zoom buttons, scroll sliders, edit-mode
// buttons and the drawing area of the project being edited, all made
// through the toolkit's forms layer and read back from its event queue by a
// polling loop.

#include "visu_net.h"

#include <memory>
#include <string>
#include <vector>

class Fl_Button;
class Fl_Menu_Button;
class Fl_Widget;
class Fl_Window;

// The nine drawing scales (pixels per model unit), smallest first, and the
// index of the default one (30).
extern const int editor_scales[9];
const int editor_default_scale_index = 6;

// One press of a zoom button from scale index `index`: the new index, and
// whether the sliders are rescaled, by `ratio`. "-" rescales on every step
// but the one down to the smallest scale; "+" on every step, the one up to
// the largest included. At either end the index stays and nothing rescales.
struct zoom_step {
    int index = editor_default_scale_index;
    bool rescale = false;
    double ratio = 1.0;
};
zoom_step zoom_moins(int index);
zoom_step zoom_plus(int index);

// The scroll offset from a coarse and a fine slider: their sum truncated
// toward zero.
int slider_offset(double coarse, double fine);

class OFD_editeur {
public:
    OFD_editeur(int argc, char** argv, const std::string& version);
    ~OFD_editeur();
    OFD_editeur(const OFD_editeur&) = delete;
    OFD_editeur& operator=(const OFD_editeur&) = delete;

    // Attaches a view to the window's drawing area at `scale`, in insert mode.
    void add_visu_net(visu_net* v, int scale);
    // Shows the window and runs the event loop until the user quits or
    // closes the window.
    void activation();
    // Multiplies a slider's value by `ratio`.
    static void fl_scale_set_slider_value(Fl_Widget* w, double ratio);

    // Before a fatal end while the editor runs: writes the project to the
    // recovery file (the last saved path, else the project's name in the
    // current folder, with ".recover.bix") and says where on standard error.
    void write_recovery() const;

private:
    Fl_Window* editeur_form = nullptr;
    Fl_Widget* modele_output = nullptr;  // never made
    Fl_Widget* version_output = nullptr;
    Fl_Widget* vert_slider = nullptr;
    Fl_Widget* vert2_slider = nullptr;
    Fl_Widget* horiz_slider = nullptr;
    Fl_Widget* horiz2_slider = nullptr;
    Fl_Widget* quit_button = nullptr;  // never made: quitting is a menu item
    Fl_Widget* zoomin_button = nullptr;
    Fl_Widget* zoomout_button = nullptr;
    Fl_Menu_Button* menu_fichier = nullptr;
    Fl_Menu_Button* menu_IO = nullptr;
    Fl_Menu_Button* menu_type = nullptr;
    Fl_Widget* insert_button = nullptr;
    Fl_Widget* edit_button = nullptr;
    Fl_Widget* move_button = nullptr;
    Fl_Widget* delete_button = nullptr;
    void* vdata = nullptr;
    long ldata = 0;
    std::unique_ptr<visu_net> pvisu_net_instance;

    std::string version_label;
    std::vector<std::string> file_labels;
    std::vector<std::string> io_labels;
    std::vector<std::string> type_labels;
    // The event loop's state: scale index and running flag.
    int scale_index = editor_default_scale_index;
    int running = 1;
    // Where the project was last saved, for the recovery file.
    std::string last_saved;
    const std::string version;

    void dispatch(Fl_Widget* w);
    void file_menu(int item);
    void io_menu(int item);
    void type_menu(int item);
    void zoom(const zoom_step& step);
    void set_mode_buttons(int mode);
    void replace_view(visu_net* v);
    void redraw_sliders();
};

#endif
