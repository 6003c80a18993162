#include "ofl_dialogs.h"

#include "black_box_form.h"
#include "io_form.h"
#include "prog_form.h"
#include "type_form.h"
#include "visu_net.h"

#include <FL/Fl_File_Chooser.H>
#include <FL/fl_ask.H>

#include <cstdlib>
#include <fstream>

namespace {

ofl_dialogs real_dialogs;
ofl_dialogs* current = &real_dialogs;

const char* const box_title = "quilp";

// When QUILP_DIALOG_LOG names a file, the text of every message box and
// alert is also appended to it, each followed by a line "--": a test that
// drives the real windows cannot read a box's text from the screen.
void log_box(const std::string& text)
{
    const char* file = std::getenv("QUILP_DIALOG_LOG");
    if (!file || !*file)
        return;
    std::ofstream log(file, std::ios::app);
    log << text << "\n--\n";
}

}  // namespace

ofl_dialogs& editor_dialogs() { return *current; }

ofl_dialogs* set_editor_dialogs(ofl_dialogs* dialogs)
{
    ofl_dialogs* previous = current;
    current = dialogs ? dialogs : &real_dialogs;
    return previous;
}

void ofl_dialogs::message(const std::string& text)
{
    log_box(text);
    fl_message_title(box_title);
    fl_message("%s", text.c_str());
}

void ofl_dialogs::alert(const std::string& text)
{
    log_box(text);
    fl_message_title(box_title);
    fl_alert("%s", text.c_str());
}

std::string ofl_dialogs::input(const std::string& prompt, const std::string& initial)
{
    fl_message_title(prompt.c_str());
    // The result lives in the dialog's own buffer: copy it at once.
    const char* answer = fl_input("%s", initial.c_str(), prompt.c_str());
    return answer ? std::string(answer) : std::string();
}

bool ofl_dialogs::file_chooser(const std::string& title, const std::string& pattern, const std::string& initial,
                               std::string* chosen)
{
    const char* path = fl_file_chooser(title.c_str(), pattern.c_str(), initial.c_str(), 0);
    if (!path || !*path)
        return false;
    *chosen = path;
    return true;
}

int ofl_dialogs::black_box_form(Fl_Window* caller, visu_net& view, int index, black_box* result)
{
    OFD_black_box_form form(caller);
    const int accepted = form.activation(view, index);
    if (accepted)
        *result = form.value();
    return accepted;
}

int ofl_dialogs::io_monitor(Fl_Window* caller, const std::string& title,
                            const std::vector<bix_declaration_variables>& table, const std::vector<std::string>& types,
                            const std::list<std::string>& in_use, std::list<bix_declaration_variables>* result)
{
    OFD_IO_form form(caller, table, title, types);
    const int accepted = form.activation(in_use);
    if (accepted)
        *result = form.value();
    return accepted;
}

int ofl_dialogs::type_monitor(Fl_Window* caller, const std::vector<std::string>& table,
                              const std::list<std::string>& in_use, std::list<std::string>* result)
{
    OFD_TYPE_form form(caller, table);
    const int accepted = form.activation(in_use);
    if (accepted)
        *result = form.value();
    return accepted;
}

int ofl_dialogs::prog_monitor(Fl_Window* caller, const std::vector<bix_declaration_ixcmodule>& table,
                              const std::list<std::string>& in_use, std::list<bix_declaration_ixcmodule>* result)
{
    OFD_PROG_form form(caller, table);
    const int accepted = form.activation(in_use);
    if (accepted)
        *result = form.value();
    return accepted;
}
