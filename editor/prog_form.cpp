#include "prog_form.h"

#include "monitor_edits.h"
#include "monitor_widgets.h"

#include <FL/Fl_Browser.H>
#include <FL/Fl_Window.H>
#include <FL/forms.H>

namespace {

const char* const form_title = "IXC modules";

void show_fields(const prog_monitor_list& list, Fl_Input* modulename, Fl_Input* filename, Fl_Input* path)
{
    fl_set_input(modulename, list.modulename_field().c_str());
    fl_set_input(filename, list.filename_field().c_str());
    fl_set_input(path, list.path_field().c_str());
    // A long path shows its end: the folder holding the module.
    path->position(path->size());
}

}  // namespace

OFD_PROG_form::OFD_PROG_form(Fl_Window* caller, const std::vector<bix_declaration_ixcmodule>& t)
    : caller_form(caller), table(t)
{
    PROG_form = fl_bgn_form(FL_NO_BOX, 700, 300);
    fl_add_box(FL_UP_BOX, 0, 0, 700, 300, "");
    add_monitor_title(30, 10, 150, 25, "integration");
    add_monitor_title(180, 10, 150, 25, "monitor");
    prog_modulename = add_monitor_name_field(110, 60, 220, 30, "Module name");
    // File name and path come from browsing, which loads the module.
    prog_filename = add_monitor_output_field(110, 90, 220, 30, "File name");
    prog_path = add_monitor_output_field(110, 120, 220, 30, "Path");
    browse_button = add_monitor_button(340, 60, 50, 90, "browse");
    add_button = add_monitor_button(100, 160, 80, 40, "add run");
    del_button = add_monitor_button(230, 160, 80, 40, "del run");
    ok_button = add_monitor_button(120, 230, 40, 40, "OK");
    cancel_button = add_monitor_button(240, 230, 60, 40, "cancel");
    browser_selection = add_monitor_browser(420, 20, 260, 270);
    fl_end_form();
}

OFD_PROG_form::~OFD_PROG_form() { delete PROG_form; }

int OFD_PROG_form::activation(const std::list<std::string>& in_use)
{
    prog_monitor_list list(table, in_use);
    show_monitor_lines(browser_selection, list.lines(), false);
    const int result = run_monitor(PROG_form, caller_form, form_title, prog_modulename, ok_button, cancel_button,
                                   [&](Fl_Widget* w) { dispatch(list, w); });
    if (result == 1)
        pliste_prog = list.result();
    return result;
}

void OFD_PROG_form::dispatch(prog_monitor_list& list, Fl_Widget* w)
{
    if (w == browse_button) {
        if (list.browse())
            show_fields(list, prog_modulename, prog_filename, prog_path);
        prog_modulename->take_focus();
    } else if (w == add_button || w == prog_modulename) {
        const bool added = list.add(fl_get_input(prog_modulename));
        if (added)
            show_fields(list, prog_modulename, prog_filename, prog_path);
        monitor_added(added, prog_modulename, browser_selection, list.lines());
    } else if (w == del_button) {
        monitor_delete(list, browser_selection);
    }
}
