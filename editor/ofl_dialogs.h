#ifndef EDITOR_OFL_DIALOGS_H
#define EDITOR_OFL_DIALOGS_H

// The editor's modal exchanges with the user: message boxes, alerts, the
// string input, the file chooser, the black box form and the declaration
// monitors. The editor reaches them all through one object, which opens the
// real windows; a test installs its own to script the answers and record
// what was shown, so the editing logic runs without a display.

#include <list>
#include <string>
#include <vector>

class Fl_Window;
class black_box;
class bix_declaration_ixcmodule;
class bix_declaration_variables;
class visu_net;

class ofl_dialogs {
public:
    virtual ~ofl_dialogs() = default;

    // A message box titled "quilp" showing `text` (which may hold several
    // lines); it closes on its button or on Enter.
    virtual void message(const std::string& text);
    // The same as an alert, before a fatal end.
    virtual void alert(const std::string& text);
    // The string input, titled with its prompt: the typed text on OK or
    // Enter, the empty text on Cancel or Escape.
    virtual std::string input(const std::string& prompt, const std::string& initial);
    // The file chooser titled `title`: true with the chosen path, false when
    // cancelled.
    virtual bool file_chooser(const std::string& title, const std::string& pattern,
                              const std::string& initial, std::string* chosen);

    // The black box form over `caller` for box `index` of `view` (-1 for a
    // new box): 1 with the chosen box, 0 when nothing was chosen.
    virtual int black_box_form(Fl_Window* caller, visu_net& view, int index, black_box* result);

    // The signal monitor titled `title` over `table`: 1 with the edited list
    // on OK, 0 on cancel. `types` are the project's types offered for new
    // entries; names in `in_use` cannot be deleted.
    virtual int io_monitor(Fl_Window* caller, const std::string& title,
                           const std::vector<bix_declaration_variables>& table,
                           const std::vector<std::string>& types, const std::list<std::string>& in_use,
                           std::list<bix_declaration_variables>* result);
    // The types monitor.
    virtual int type_monitor(Fl_Window* caller, const std::vector<std::string>& table,
                             const std::list<std::string>& in_use, std::list<std::string>* result);
    // The runs monitor.
    virtual int prog_monitor(Fl_Window* caller, const std::vector<bix_declaration_ixcmodule>& table,
                             const std::list<std::string>& in_use,
                             std::list<bix_declaration_ixcmodule>* result);
};

// The dialogs in use: the real ones unless a test installed others.
ofl_dialogs& editor_dialogs();

// Installs `dialogs` (null restores the real ones); returns the previous.
ofl_dialogs* set_editor_dialogs(ofl_dialogs* dialogs);

#endif
