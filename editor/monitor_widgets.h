#ifndef EDITOR_MONITOR_WIDGETS_H
#define EDITOR_MONITOR_WIDGETS_H

// The widgets and the polling the three declaration monitors share. Each is
// made with the forms calls inside the form being built.

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

// One turn of a form's loop: the widget the toolkit queued, or null after
// a 1 ms pause when nothing was.
Fl_Widget* next_monitor_event();

// Shows `form` modally over `caller` (disabled meanwhile, when not null).
void open_monitor(Fl_Window* form, Fl_Window* caller, const char* title);
void close_monitor(Fl_Window* form, Fl_Window* caller);

#endif
