#include "io_form.h"

#include "forms_menu.h"
#include "monitor_edits.h"
#include "monitor_widgets.h"

#include <FL/Fl_Browser.H>
#include <FL/Fl_Window.H>
#include <FL/forms.H>

OFD_IO_form::OFD_IO_form(Fl_Window* caller, const std::vector<bix_declaration_variables>& t,
                         const std::string& form_title, const std::vector<std::string>& types)
    : caller_form(caller), title(form_title), table(t)
{
    type_names.push_back("pure");
    type_names.insert(type_names.end(), types.begin(), types.end());

    IO_form = fl_bgn_form(FL_NO_BOX, 600, 360);
    fl_add_box(FL_UP_BOX, 0, 0, 600, 360, "");
    add_monitor_title(30, 20, 260, 30, title.c_str());
    input_signal = add_monitor_name_field(110, 70, 200, 30, "Name");
    type_button = fl_add_choice(FL_NORMAL_CHOICE, 110, 110, 200, 30, "Type");
    fl_set_object_lstyle(type_button, FL_TIMES_STYLE);
    type_button->when(FL_WHEN_NEVER);
    add_button = add_monitor_button(40, 150, 80, 40, "add signal");
    del_button = add_monitor_button(160, 150, 80, 40, "del signal");
    ok_button = add_monitor_button(60, 280, 40, 40, "OK");
    cancel_button = add_monitor_button(170, 280, 60, 40, "cancel");
    browser_selection = add_monitor_browser(350, 20, 230, 330);
    fl_end_form();
    set_menu_labels(type_button, type_names, type_labels);
    fl_set_choice(type_button, 1);
}

OFD_IO_form::~OFD_IO_form()
{
    // The choice goes with the form, before its labels do.
    delete IO_form;
}

int OFD_IO_form::activation(const std::list<std::string>& in_use)
{
    io_monitor_list list(table, in_use);
    show_monitor_lines(browser_selection, list.lines(), false);
    const int result = run_monitor(IO_form, caller_form, title.c_str(), input_signal, ok_button, cancel_button,
                                   [&](Fl_Widget* w) { dispatch(list, w); });
    if (result == 1)
        pliste_IO = list.result();
    return result;
}

void OFD_IO_form::dispatch(io_monitor_list& list, Fl_Widget* w)
{
    if (w == add_button || w == input_signal) {
        const int chosen = fl_get_choice(type_button);
        const bool known = chosen >= 1 && static_cast<std::size_t>(chosen) <= type_names.size();
        const bool added = list.add(known ? type_names[chosen - 1] : "pure", fl_get_input(input_signal));
        monitor_added(added, input_signal, browser_selection, list.lines());
    } else if (w == del_button) {
        monitor_delete(list, browser_selection);
    }
}
