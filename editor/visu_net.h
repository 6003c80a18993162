#ifndef EDITOR_VISU_NET_H
#define EDITOR_VISU_NET_H

// The editor's view of a project: the project itself plus what it takes to
// show it in the main window and edit it with the mouse (scale, scroll
// offsets, the drawing widget and the selection). Drawing is in
// visu_net_draw.cpp, the mouse in visu_net_mouse.cpp, the declaration
// monitors' results in visu_net_monitors.cpp.
//
// A view that is not attached to a window (no drawing widget) draws nothing;
// everything else works the same, which is how the tests drive it.

#include "bix_norm.h"
#include "ofl_sheet.h"
#include "sheet_geometry.h"

#include <functional>
#include <iosfwd>
#include <list>
#include <string>

class Fl_Window;
class OFL_feuille;

// Edit modes.
enum {
    VISUNET_MODE_INSERT = 1,
    VISUNET_MODE_EDIT = 2,
    VISUNET_MODE_MOVE = 3,
    VISUNET_MODE_DELETE = 4
};

// Colours of the sheet (toolkit colour indices).
enum {
    VISUNET_BLACK = 56,  // texts, ports and links
    VISUNET_RED = 88,    // highlighted or being moved
    VISUNET_WHITE = 255  // box frames in a full redraw
};

class visu_net : public bix_tpen_fichier {
public:
    // An empty project, in insert mode.
    visu_net();
    // A copy of a loaded project, in move mode.
    explicit visu_net(const bix_tpen_fichier* project);
    // Takes the drawing widget out of its window and deletes it.
    ~visu_net() override;
    visu_net(const visu_net&) = delete;
    visu_net& operator=(const visu_net&) = delete;

    // Empties the project's tables and resets the view's state (scale,
    // offsets, selection, mode 1); the drawing widget stays attached.
    void clear();

    // ---- Attachment and view state
    // Creates the drawing widget at (x, y, w, h) in `form`, the sheet with
    // the same bounds and background `color`; returns the widget.
    OFL_feuille* fl_add_visu_net(Fl_Window* form, int x, int y, int w, int h, int color, int scale);
    OFL_feuille* fl_xforms_objet() const { return internal_ob; }
    // Takes the drawing widget out of its window and deletes it.
    void fl_remove_visu_net();

    void change_scale(int s) { scale = s; }
    void xforms_hslide(int h) { hslide = h; }
    void xforms_vslide(int v) { vslide = v; }
    void change_mode(int m) { internal_mode = m; }
    int mon_scale() const { return scale; }
    int mon_hslide() const { return hslide; }
    int mon_vslide() const { return vslide; }
    int mon_mode() const { return internal_mode; }
    // Scale, offsets and the drawing widget's origin (0, 0 when detached).
    sheet_view vue() const;

    static int scale2font_size(int s) { return ::scale2font_size(s); }

    // ---- Drawing (nothing while detached or while the window is not shown)
    void xforms_redraw(int s);
    void xforms_draw();
    void ixcmodule_xforms_draw(int i, int color);
    void ixcinput_xforms_draw(int i, int port, int color);
    void ixcoutput_xforms_draw(int i, int port, int color);
    void trans_xforms_draw(int k, const bix_tpen_fichier* model, int color);
    void ixcmodule_xforms_undraw(int i);
    void trans_xforms_undraw(int k, const bix_tpen_fichier* model);
    // Hit tests that redraw the object in red when hit: 1 on a hit, else 0.
    int ixcmodule_xforms_highlight(int i, int x, int y);
    int ixcinput_xforms_highlight(int i, int port, int x, int y);
    int ixcoutput_xforms_highlight(int i, int port, int x, int y);
    int trans_xforms_highlight(int k, int x, int y);
    // Redraws the selected object in its normal colour.
    void xforms_unhighlight();

    // ---- Mouse (window pixel coordinates)
    void motion(int x, int y);
    void detect_object(int x, int y);
    void push(int x, int y);
    void drag(int x, int y, int dx, int dy);
    void release(int x, int y);
    void ixcmodule_xforms_move(int i, int x, int y);
    void trans_xforms_move(int k, int x, int y);

    // What the pointer is over, and where a link was started.
    sheet_object objet_selectionne() const { return {type_object_select, num_object_select, num_object2_select}; }
    sheet_object premier_objet() const
    {
        return {first_type_object_select, first_num_object_select, first_num_object2_select};
    }

    // ---- Project files and declarations
    // 1 when the project has a name; otherwise "NAME THE PROJECT FIRST!" in a
    // message box and 0.
    int correct_initialisation();
    // Writers behind Save and Export (file names as quilp_names.h gives
    // them). Each writes through a temporary file; on failure a message box
    // names the file, the previous file stays as it was, and false is
    // returned.
    bool sauve(const std::string& path, const std::string& name);
    bool export_ix(const std::string& path, const std::string& name);
    bool export_xfig(const std::string& path, const std::string& name);

    // The declaration monitors and how their results are applied.
    void inputs_handling();
    void outputs_handling();
    void locals_handling();
    void types_handling();
    void progs_handling();
    void variables_handling();
    void sensors_handling();

    // Replacing a declaration table, renumbering the boxes that refer to
    // it: what the monitors' OK does.
    void apply_inputs(const std::list<bix_declaration_variables>& table);
    void apply_outputs(const std::list<bix_declaration_variables>& table);
    void apply_locals(const std::list<bix_declaration_variables>& table);
    void apply_types(const std::list<std::string>& table);
    void apply_progs(const std::list<bix_declaration_ixcmodule>& table);
    // Names the boxes of kind `tpe` refer to (signals of kinds 1 and 2, runs
    // of kind 0), and types used by a signal or a run.
    std::list<std::string> names_in_use(int tpe) const;
    std::list<std::string> types_in_use() const;

private:
    // Declared as the view's state, in this order.
    int background_color = 49;
    int scale = 30;
    int hslide = 0;
    int vslide = 0;
    OFL_feuille* internal_ob = nullptr;
    Fl_Window* associate_forms = nullptr;
    OFL_vision_sheet vs;
    int type_object_select = VISUNET_NO_OBJ;
    int first_type_object_select = VISUNET_NO_OBJ;
    int num_object_select = 0;
    int num_object2_select = 0;
    int first_num_object_select = 0;
    int first_num_object2_select = 0;
    int first_x = 0;
    int first_y = 0;
    int internal_mode = VISUNET_MODE_INSERT;
    int internal_num_bb_max = 0;
    // Set when a press opened a dialog: the press's own release, should it
    // reach the sheet after the dialog, is then ignored.
    bool press_opened_dialog = false;

    friend class OFL_feuille;

    // While one lives, drawing can happen (attached, window shown: `ok`):
    // the outermost makes the window current and every one clips to the
    // sheet. Nested draws must not make the window current again, which
    // would drop the clip.
    class drawing;
    int drawing_depth = 0;
    void draw_box_contents(int i, const pixel_rect& frame);
    void draw_polyline(const std::vector<pixel_point>& line, int color);
    void reset_view_state();
    // A link from output up_output of box up_box to input down_input of box
    // down_box, when their types agree; otherwise the refusal box.
    void connect(int up_box, int up_output, int down_box, int down_input);
    // Draws port k of box i as an arrow from (x1, y) to (x2, y).
    void draw_port(double x1, double x2, double y, int color);
    // The signal monitor titled `title` over `table`, whose entries the
    // boxes of kind `tpe` show; the result replaces the table.
    void signals_handling(const char* title, std::vector<bix_declaration_variables>& table, int tpe);
    void redraw_all();
    bool write_through(const std::string& file, const std::function<void(std::ostream&)>& write);
    void replace_signals(std::vector<bix_declaration_variables>& table, int tpe,
                         const std::list<bix_declaration_variables>& fresh);
};

// Editor entry of the project reader: "ouverture de <name>" on standard
// error, then the read with its trace in <name>.log. Null after a message
// when the file cannot be opened or parsed; otherwise a new view of it.
visu_net* parse_visu_net(const std::string& name);

#endif
