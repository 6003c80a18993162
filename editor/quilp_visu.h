#ifndef QUILP_VISU_H
#define QUILP_VISU_H

// The editor's view of a project: the project itself plus the state needed
// to show it in the main window and edit it with the mouse.

#include "bix_norm.h"

#include <string>

// Edit modes.
enum {
    VISUNET_MODE_INSERT = 1,
    VISUNET_MODE_EDIT = 2,
    VISUNET_MODE_MOVE = 3,
    VISUNET_MODE_DELETE = 4
};

class visu_net : public bix_tpen_fichier {
public:
    // An empty project, in insert mode.
    visu_net();
    // A copy of a loaded project, in move mode.
    explicit visu_net(const bix_tpen_fichier* project);

    int mon_scale() const { return scale; }
    void change_scale(int s) { scale = s; }
    void xforms_hslide(int h) { hslide = h; }
    void xforms_vslide(int v) { vslide = v; }
    int mon_mode() const { return internal_mode; }
    void change_mode(int m) { internal_mode = m; }

protected:
    int background_color = 49;
    int scale = 30;
    int hslide = 0;
    int vslide = 0;
    int type_object_select = -1;
    int first_type_object_select = -1;
    int num_object_select = -1;
    int num_object2_select = -1;
    int first_num_object_select = -1;
    int first_num_object2_select = -1;
    int first_x = 0;
    int first_y = 0;
    int internal_mode = VISUNET_MODE_INSERT;
    int internal_num_bb_max = 0;
};

// Editor entry of the project reader: "ouverture de <name>" on standard
// error, then the read with its trace in <name>.log. Null after a message
// when the file cannot be opened or parsed; otherwise a new view of it.
visu_net* parse_visu_net(const std::string& name);

#endif
