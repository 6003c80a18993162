#include "monitor_widgets.h"

#include <FL/Fl.H>
#include <FL/forms.H>

#include <unistd.h>

Fl_Widget* add_monitor_title(int x, int y, int w, int h, const char* label)
{
    Fl_Widget* title = fl_add_text(FL_NORMAL_TEXT, x, y, w, h, label);
    fl_set_object_lalign(title, FL_ALIGN_CENTER | FL_ALIGN_INSIDE);
    fl_set_object_lstyle(title, FL_BOLD_STYLE);
    return title;
}

Fl_Input* add_monitor_name_field(int x, int y, int w, int h, const char* label)
{
    Fl_Input* field = fl_add_input(FL_NORMAL_INPUT, x, y, w, h, label);
    fl_set_object_lstyle(field, FL_TIMES_STYLE);
    field->when(FL_WHEN_ENTER_KEY_ALWAYS);
    return field;
}

Fl_Input* add_monitor_output_field(int x, int y, int w, int h, const char* label)
{
    Fl_Input* field = fl_add_input(FL_NORMAL_INPUT, x, y, w, h, label);
    fl_set_object_lstyle(field, FL_TIMES_STYLE);
    field->readonly(1);
    field->when(FL_WHEN_NEVER);
    return field;
}

Fl_Button* add_monitor_button(int x, int y, int w, int h, const char* label)
{
    Fl_Button* button = fl_add_button(FL_NORMAL_BUTTON, x, y, w, h, label);
    fl_set_object_lstyle(button, FL_TIMES_STYLE);
    return button;
}

Fl_Browser* add_monitor_browser(int x, int y, int w, int h)
{
    Fl_Browser* browser = fl_add_browser(FL_HOLD_BROWSER, x, y, w, h, "");
    browser->format_char(0);
    // The selection is read when "del ..." is pressed.
    browser->when(FL_WHEN_NEVER);
    return browser;
}

void show_monitor_lines(Fl_Browser* browser, const std::vector<std::string>& lines, bool show_last)
{
    const int top = browser->topline();
    browser->clear();
    for (const std::string& line : lines)
        browser->add(line.c_str());
    if (browser->size() == 0)
        return;
    if (show_last)
        browser->bottomline(browser->size());
    else
        browser->topline(top);
}

int selected_monitor_line(Fl_Browser* browser) { return browser->value() - 1; }

void monitor_added(bool added, Fl_Input* field, Fl_Browser* browser, const std::vector<std::string>& lines)
{
    if (added) {
        fl_set_input(field, "");
        show_monitor_lines(browser, lines, true);
    }
    field->take_focus();
}

int run_monitor(Fl_Window* form, Fl_Window* caller, const char* title, Fl_Widget* focus, Fl_Widget* ok,
                Fl_Widget* cancel, const std::function<void(Fl_Widget*)>& dispatch)
{
    if (caller)
        fl_deactivate_form(caller);
    fl_show_form(form, FL_PLACE_MOUSE, FL_TRANSIENT, title);
    focus->take_focus();
    int result = -1;
    while (result < 0) {
        Fl::check();
        Fl_Widget* w = Fl::readqueue();
        if (w == ok)
            result = 1;
        else if (w == cancel || !form->shown())
            result = 0;
        else if (w)
            dispatch(w);
        usleep(1000);
    }
    fl_hide_form(form);
    if (caller)
        fl_activate_form(caller);
    return result;
}
