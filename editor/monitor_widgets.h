#ifndef EDITOR_MONITOR_WIDGETS_H
#define EDITOR_MONITOR_WIDGETS_H

// The widgets and the polling the three declaration monitors share. Each is
// made with the forms calls inside the form being built.

#include <functional>
#include <string>
#include <vector>

class Fl_Browser;
class Fl_Button;
class Fl_Input;
class Fl_Widget;
class Fl_Window;

// A title text: bold, centred in its box.
Fl_Widget* add_monitor_title(int x, int y, int w, int h, const char* label);
// A name field labelled on its left that reports Enter (and only Enter), so
// the form's loop can take Enter for "add ...".
Fl_Input* add_monitor_name_field(int x, int y, int w, int h, const char* label);
// A field the form fills and the user can only read and copy.
Fl_Input* add_monitor_output_field(int x, int y, int w, int h, const char* label);
Fl_Button* add_monitor_button(int x, int y, int w, int h, const char* label);
// The list: a hold browser in the toolkit's default font and size, its
// lines shown as they are (no "@" formatting).
Fl_Browser* add_monitor_browser(int x, int y, int w, int h);

// Replaces the browser's lines, keeping its scroll position, or scrolled to
// the last line when `show_last`. Nothing is selected afterwards.
void show_monitor_lines(Fl_Browser* browser, const std::vector<std::string>& lines, bool show_last);
// The selected line, 0-based, or -1.
int selected_monitor_line(Fl_Browser* browser);
// After "add ...": when a line was added the name field is emptied and the
// list shown down to its new last line; the keyboard goes back to the field
// either way (a refused name stays there, selected, to be typed over).
void monitor_added(bool added, Fl_Input* field, Fl_Browser* browser, const std::vector<std::string>& lines);
// "del ...": the selected line goes unless `list` refuses.
template <class L>
void monitor_delete(L& list, Fl_Browser* browser)
{
    if (list.del(selected_monitor_line(browser)))
        show_monitor_lines(browser, list.lines(), false);
}

// Shows `form` modally over `caller` (disabled meanwhile, when not null),
// with the keyboard in `focus`, and polls the forms queue as the main window
// does, passing every widget other than `ok` and `cancel` to `dispatch`.
// Returns 1 on `ok`, 0 on `cancel` or when the window was closed, after
// hiding the form and enabling `caller` again.
int run_monitor(Fl_Window* form, Fl_Window* caller, const char* title, Fl_Widget* focus, Fl_Widget* ok,
                Fl_Widget* cancel, const std::function<void(Fl_Widget*)>& dispatch);

#endif
