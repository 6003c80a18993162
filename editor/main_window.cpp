#include "main_window.h"

#include "bdd_fatal.h"
#include "editor_warn.h"
#include "exceptions.h"
#include "file_replace.h"
#include "forms_menu.h"
#include "ofl_dialogs.h"
#include "quilp_names.h"

#include <FL/Fl.H>
#include <FL/forms.H>

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <unistd.h>

const int editor_scales[9] = {5, 8, 10, 15, 20, 25, 30, 40, 50};

namespace {

const int last_scale_index = 8;

// Item numbers of the File menu: the "Export" submenu's title, its one
// item and its end each take a number.
enum { FILE_NEW = 1, FILE_NAME = 2, FILE_LOAD = 3, FILE_SAVE = 4, FILE_XFIG = 6, FILE_ABOUT = 8, FILE_QUIT = 9 };

// The item strings, blanks kept as they are.
const char* const file_items =
    "  New |  Name |  Load  |  Save  |  Export/ xfig: graphical format |  About |  Quit  ";
const char* const io_items = "  Inputs  |  Outputs |  Locals |  Runs ";
const char* const type_items = " Modify ";

const char* const author_line = "author the quilp developers";

// The editor whose project a fatal end saves first.
const OFD_editeur* running_editor = nullptr;

void editor_alert(const std::string& text) { editor_dialogs().alert(text); }
void editor_message(const std::string& text) { editor_dialogs().message(text); }
void editor_recovery()
{
    if (running_editor)
        running_editor->write_recovery();
}

// The toolkit's fatal errors (no display, a lost connection to it) end the
// process as every fatal condition does here: one line on standard error,
// the recovery file when a project is being edited, status 1.
void toolkit_fatal(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    char text[1024];
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    die(std::string("quilp: ") + text);
}

// Escape must not close the main window (unsaved work would be lost); the
// window manager's close button does.
void main_window_close(Fl_Widget* w, void*)
{
    if (Fl::event() == FL_SHORTCUT && Fl::event_key() == FL_Escape)
        return;
    w->hide();
}

}  // namespace

zoom_step zoom_moins(int index)
{
    zoom_step step;
    step.index = index - 1;
    if (step.index > 0) {
        step.rescale = true;
        step.ratio = static_cast<double>(editor_scales[step.index]) / editor_scales[step.index + 1];
    } else {
        // The step down to the smallest scale leaves the sliders alone: kept.
        step.index = 0;
    }
    return step;
}

zoom_step zoom_plus(int index)
{
    zoom_step step;
    step.index = index + 1;
    if (step.index <= last_scale_index) {
        step.rescale = true;
        step.ratio = static_cast<double>(editor_scales[step.index]) / editor_scales[step.index - 1];
    } else {
        step.index = last_scale_index;
    }
    return step;
}

int slider_offset(double coarse, double fine)
{
    const double sum = std::trunc(coarse + fine);
    // Slider values stay within their bounds; anything else reads as 0.
    if (!(std::fabs(sum) < 1e9))
        return 0;
    return static_cast<int>(sum);
}

OFD_editeur::OFD_editeur(int argc, char** argv, const std::string& v)
    : version_label("quilp   v. " + v), version(v)
{
    Fl::fatal = toolkit_fatal;
    fl_initialize(&argc, argv, "quilp", nullptr, 0);
    pvisu_net_instance = std::make_unique<visu_net>();

    editeur_form = fl_bgn_form(FL_NO_BOX, 1000, 600);
    fl_add_box(FL_UP_BOX, 0, 0, 1000, 600, "");

    vert_slider = fl_add_slider(FL_VERT_NICE_SLIDER, 960, 60, 20, 500, "");
    fl_set_slider_bounds(vert_slider, 0, 1000);
    vert2_slider = fl_add_slider(FL_VERT_NICE_SLIDER, 980, 60, 20, 520, "");
    fl_set_slider_bounds(vert2_slider, 0, 10000);
    horiz_slider = fl_add_slider(FL_HOR_NICE_SLIDER, 10, 560, 950, 20, "");
    fl_set_slider_bounds(horiz_slider, 0, 1000);
    fl_set_slider_value(horiz_slider, 0);
    horiz2_slider = fl_add_slider(FL_HOR_NICE_SLIDER, 10, 580, 970, 20, "");
    fl_set_slider_bounds(horiz2_slider, 0, 10000);
    fl_set_slider_value(horiz2_slider, 0);

    // Type 2 is a plain momentary button; the loop also pushes it back up.
    zoomin_button = fl_add_button(2, 380, 20, 30, 30, "-");
    zoomout_button = fl_add_button(2, 420, 20, 30, 30, "+");

    version_output = fl_add_box(FL_NO_BOX, 460, 20, 240, 30, version_label.c_str());
    fl_set_object_lalign(version_output, FL_ALIGN_CENTER | FL_ALIGN_INSIDE);
    fl_set_object_lstyle(version_output, FL_TIMES_STYLE);
    fl_set_object_lsize(version_output, 14);

    menu_fichier = fl_add_menu(FL_TOUCH_MENU, 20, 20, 60, 30, "File");
    menu_IO = fl_add_menu(FL_TOUCH_MENU, 100, 20, 80, 30, "I/O");
    menu_type = fl_add_menu(FL_TOUCH_MENU, 200, 20, 70, 30, "Types");
    for (Fl_Widget* m : {static_cast<Fl_Widget*>(menu_fichier), static_cast<Fl_Widget*>(menu_IO),
                         static_cast<Fl_Widget*>(menu_type)}) {
        fl_set_object_lstyle(m, FL_TIMES_STYLE);
        fl_set_object_lsize(m, 12);
    }

    fl_bgn_group();
    insert_button = fl_add_button(FL_RADIO_BUTTON, 710, 20, 30, 30, "Ins");
    edit_button = fl_add_button(FL_RADIO_BUTTON, 740, 20, 30, 30, "Edit");
    move_button = fl_add_button(FL_RADIO_BUTTON, 770, 20, 30, 30, "Mov");
    delete_button = fl_add_button(FL_RADIO_BUTTON, 800, 20, 30, 30, "Del");
    for (Fl_Widget* b : {insert_button, edit_button, move_button, delete_button}) {
        fl_set_object_lstyle(b, FL_TIMES_STYLE);
        fl_set_object_lsize(b, 12);
    }
    fl_end_group();
    fl_end_form();

    editeur_form->resizable(version_output);
    editeur_form->callback(main_window_close);

    set_forms_menu(menu_fichier, file_items, file_labels);
    set_forms_menu(menu_IO, io_items, io_labels);
    set_forms_menu(menu_type, type_items, type_labels);
}

OFD_editeur::~OFD_editeur()
{
    // The view's drawing widget goes before the window holding it.
    pvisu_net_instance.reset();
    delete editeur_form;
}

void OFD_editeur::fl_scale_set_slider_value(Fl_Widget* w, double ratio)
{
    fl_set_slider_value(w, fl_get_slider_value(w) * ratio);
}

void OFD_editeur::set_mode_buttons(int mode)
{
    fl_set_button(insert_button, mode == VISUNET_MODE_INSERT);
    fl_set_button(edit_button, mode == VISUNET_MODE_EDIT);
    fl_set_button(move_button, mode == VISUNET_MODE_MOVE);
    fl_set_button(delete_button, mode == VISUNET_MODE_DELETE);
}

void OFD_editeur::add_visu_net(visu_net* v, int scale)
{
    fl_freeze_form(editeur_form);
    v->fl_add_visu_net(editeur_form, 10, 60, 950, 500, 50, scale);
    fl_unfreeze_form(editeur_form);
    v->change_scale(scale);
    v->change_mode(VISUNET_MODE_INSERT);
    v->xforms_redraw(scale);
    set_mode_buttons(VISUNET_MODE_INSERT);
}

void OFD_editeur::redraw_sliders()
{
    for (Fl_Widget* s : {horiz_slider, horiz2_slider, vert_slider, vert2_slider})
        fl_redraw_object(s);
}

void OFD_editeur::replace_view(visu_net* v)
{
    // The old view takes its drawing widget with it, so no widget is left
    // pointing at it.
    pvisu_net_instance.reset(v);
    last_saved.clear();
}

void OFD_editeur::activation()
{
    running_editor = this;
    const alert_hook previous_alert = set_alert_hook(editor_alert);
    const message_hook previous_message = set_message_hook(editor_message);
    const fatal_ending_handler previous_ending = set_fatal_ending(editor_recovery);

    fl_show_form(editeur_form, FL_PLACE_MOUSE, FL_TRANSIENT, "QUILP: Linker Of Object Modules");
    add_visu_net(pvisu_net_instance.get(), editor_scales[scale_index]);
    running = 1;
    while (true) {
        Fl::check();
        Fl_Widget* w = Fl::readqueue();
        if (w)
            dispatch(w);
        if (!editeur_form->shown())
            running = 0;
        usleep(1000);
        if (!running) {
            fl_hide_form(editeur_form);
            break;
        }
    }

    set_fatal_ending(previous_ending);
    set_message_hook(previous_message);
    set_alert_hook(previous_alert);
    running_editor = nullptr;
}

void OFD_editeur::dispatch(Fl_Widget* w)
{
    visu_net* v = pvisu_net_instance.get();
    if (w == menu_fichier)
        file_menu(fl_get_menu(menu_fichier));
    if (w == menu_IO)
        io_menu(fl_get_menu(menu_IO));
    if (w == menu_type)
        type_menu(fl_get_menu(menu_type));
    if (w == zoomin_button) {
        fl_set_button(w, 0);
        zoom(zoom_moins(scale_index));
    }
    if (w == zoomout_button) {
        fl_set_button(w, 0);
        zoom(zoom_plus(scale_index));
    }
    if (w == horiz_slider || w == horiz2_slider || w == vert_slider || w == vert2_slider) {
        const bool horizontal = w == horiz_slider || w == horiz2_slider;
        const int offset = horizontal ? slider_offset(fl_get_slider_value(horiz2_slider), fl_get_slider_value(horiz_slider))
                                      : slider_offset(fl_get_slider_value(vert_slider), fl_get_slider_value(vert2_slider));
        if (v) {
            if (horizontal)
                v->xforms_hslide(offset);
            else
                v->xforms_vslide(offset);
            v->xforms_redraw(editor_scales[scale_index]);
        }
        redraw_sliders();
    }
    if (v) {
        if (w == insert_button)
            v->change_mode(VISUNET_MODE_INSERT);
        if (w == edit_button)
            v->change_mode(VISUNET_MODE_EDIT);
        if (w == move_button)
            v->change_mode(VISUNET_MODE_MOVE);
        if (w == delete_button)
            v->change_mode(VISUNET_MODE_DELETE);
    }
}

void OFD_editeur::zoom(const zoom_step& step)
{
    scale_index = step.index;
    if (step.rescale)
        for (Fl_Widget* s : {horiz2_slider, horiz_slider, vert2_slider, vert_slider})
            fl_scale_set_slider_value(s, step.ratio);
    if (pvisu_net_instance)
        pvisu_net_instance->xforms_redraw(editor_scales[scale_index]);
    redraw_sliders();
}

void OFD_editeur::file_menu(int item)
{
    ofl_dialogs& dialogs = editor_dialogs();
    visu_net* v = pvisu_net_instance.get();
    switch (item) {
    case FILE_NEW:
        replace_view(new visu_net());
        scale_index = editor_default_scale_index;
        add_visu_net(pvisu_net_instance.get(), editor_scales[scale_index]);
        break;
    case FILE_NAME: {
        if (!v)
            break;
        // A name the project file cannot hold (blanks, dots, ...) is refused:
        // the project would save but not read back.
        const std::string answer = trim_blanks(dialogs.input("New project name", v->mon_nom_module()));
        if (answer.empty())
            break;
        if (checkvarname_with_pre_underscore(answer))
            v->def_nom_module(answer);
        else
            dialogs.message("\"" + answer + "\"\n is not a correct project name");
        break;
    }
    case FILE_LOAD: {
        std::string path;
        if (!dialogs.file_chooser("bix file selection", "*.bix", "", &path))
            break;
        if (v)
            v->clear();
        replace_view(parse_visu_net(path));
        if (pvisu_net_instance) {
            scale_index = editor_default_scale_index;
            add_visu_net(pvisu_net_instance.get(), editor_scales[scale_index]);
            pvisu_net_instance->change_mode(VISUNET_MODE_MOVE);
            set_mode_buttons(VISUNET_MODE_MOVE);
        } else {
            dialogs.message("FILE NOT FOUND!");
        }
        break;
    }
    case FILE_SAVE: {
        if (!v || !v->correct_initialisation())
            break;
        const std::string name = v->mon_nom_module();
        std::string path;
        if (!dialogs.file_chooser("save bix file", "*.bix", name + ".bix", &path))
            break;
        // Saving always writes the main module beside the project file.
        if (v->sauve(path, name)) {
            last_saved = sauve_file_name(path);
            v->export_ix(supress_filename_extension(path) + ".ix", name);
        }
        break;
    }
    case FILE_XFIG: {
        if (!v || !v->correct_initialisation())
            break;
        const std::string name = v->mon_nom_module();
        std::string path;
        if (dialogs.file_chooser("save xfig file", "*.fig", name + ".fig", &path) && pvisu_net_instance)
            pvisu_net_instance->export_xfig(path, name);
        break;
    }
    case FILE_ABOUT:
        dialogs.message(version_label + "\n" + author_line);
        break;
    case FILE_QUIT:
        running = 0;
        break;
    default:
        editor_warn() << "anormalement trouve: " << item << std::endl;
        break;
    }
}

void OFD_editeur::io_menu(int item)
{
    visu_net* v = pvisu_net_instance.get();
    if (!v) {
        editor_warn() << "internal error: instance devrait etre defini ..." << std::endl;
        return;
    }
    if (!v->correct_initialisation())
        return;
    switch (item) {
    case 1:
        v->inputs_handling();
        break;
    case 2:
        v->outputs_handling();
        break;
    case 3:
        v->locals_handling();
        break;
    case 4:
        v->progs_handling();
        break;
    default:
        break;
    }
}

void OFD_editeur::type_menu(int item)
{
    visu_net* v = pvisu_net_instance.get();
    if (item != 1)
        return;
    if (!v) {
        editor_warn() << "internal error: instance devrait etre defini ..." << std::endl;
        return;
    }
    if (v->correct_initialisation())
        v->types_handling();
}

void OFD_editeur::write_recovery() const
{
    const visu_net* v = pvisu_net_instance.get();
    // Nothing to keep: no view, or a project with nothing in it yet.
    if (!v || (v->mon_nom_module().empty() && v->nbr_types() + v->nbr_inputs() + v->nbr_outputs() +
                                                      v->nbr_locals() + v->nbr_external_ixcmodules() +
                                                      v->nbr_black_box() + v->nbr_transitions() ==
                                                  0))
        return;
    const std::string name = v->mon_nom_module();
    const std::string base =
        !last_saved.empty() ? supress_filename_extension(last_saved) : (name.empty() ? "quilp" : name);
    const std::string file = base + ".recover.bix";
    std::string error;
    if (replace_file(file, [&](std::ostream& os) { v->put_bix(os, name); }, &error))
        std::cerr << "quilp: the project was saved in " << file << " before ending" << std::endl;
    else
        std::cerr << "quilp: the project could not be saved in " << file << ": " << error << std::endl;
}
