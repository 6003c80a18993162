#include "type_form.h"

#include "monitor_edits.h"
#include "monitor_widgets.h"

#include <FL/Fl_Browser.H>
#include <FL/Fl_Window.H>
#include <FL/forms.H>

namespace {

const char* const form_title = "Types monitor";

}  // namespace

OFD_TYPE_form::OFD_TYPE_form(Fl_Window* caller, const std::vector<std::string>& t) : caller_form(caller), table(t)
{
    TYPE_form = fl_bgn_form(FL_NO_BOX, 600, 360);
    fl_add_box(FL_UP_BOX, 0, 0, 600, 360, "");
    add_monitor_title(30, 20, 260, 30, form_title);
    input_signal = add_monitor_name_field(110, 70, 200, 30, "Name");
    add_button = add_monitor_button(40, 150, 80, 40, "add type");
    del_button = add_monitor_button(160, 150, 80, 40, "del type");
    ok_button = add_monitor_button(60, 280, 40, 40, "OK");
    cancel_button = add_monitor_button(170, 280, 60, 40, "cancel");
    browser_selection = add_monitor_browser(350, 20, 230, 330);
    fl_end_form();
}

OFD_TYPE_form::~OFD_TYPE_form() { delete TYPE_form; }

int OFD_TYPE_form::activation(const std::list<std::string>& in_use)
{
    type_monitor_list list(table, in_use);
    show_monitor_lines(browser_selection, list.lines(), false);
    const int result = run_monitor(TYPE_form, caller_form, form_title, input_signal, ok_button, cancel_button,
                                   [&](Fl_Widget* w) { dispatch(list, w); });
    if (result == 1)
        pliste_TYPE = list.result();
    return result;
}

void OFD_TYPE_form::dispatch(type_monitor_list& list, Fl_Widget* w)
{
    if (w == add_button || w == input_signal) {
        monitor_added(list.add(fl_get_input(input_signal)), input_signal, browser_selection, list.lines());
    } else if (w == del_button) {
        monitor_delete(list, browser_selection);
    }
}
