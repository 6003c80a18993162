// What the mouse does on the sheet: a press finds the object under the
// pointer and starts an action, a drag previews it, a release completes it
// through one operation of the project, then everything is redrawn.

#include "visu_net.h"

#include "editor_warn.h"
#include "ofl_dialogs.h"

#include <cmath>
#include <iostream>
#include <limits>

void visu_net::redraw_all() { xforms_draw(); }

void visu_net::motion(int x, int y) { detect_object(x, y); }

void visu_net::detect_object(int x, int y)
{
    xforms_unhighlight();
    type_object_select = VISUNET_NO_OBJ;
    // Every object hit is shown in red; the last one met is the selection.
    for (const sheet_object& hit : objects_under(*this, vue(), x, y)) {
        switch (hit.type) {
        case VISUNET_IXCMODULE_OBJ:
            ixcmodule_xforms_draw(hit.num, VISUNET_RED);
            break;
        case VISUNET_IXCMODULE_INPUT_OBJ:
            ixcinput_xforms_draw(hit.num, hit.num2, VISUNET_RED);
            break;
        case VISUNET_IXCMODULE_OUTPUT_OBJ:
            ixcoutput_xforms_draw(hit.num, hit.num2, VISUNET_RED);
            break;
        default:
            trans_xforms_draw(hit.num, this, VISUNET_RED);
            break;
        }
        type_object_select = hit.type;
        num_object_select = hit.num;
        num_object2_select = hit.num2;
    }
}

void visu_net::push(int x, int y)
{
    // The press acts on what is under the pointer now, even when no motion
    // was seen since the last change (a dialog just closed, say).
    detect_object(x, y);
    press_opened_dialog = false;
    if (!correct_initialisation()) {
        press_opened_dialog = true;
        return;
    }
    first_x = x;
    first_y = y;
    switch (internal_mode) {
    case VISUNET_MODE_INSERT:
        if (type_object_select == VISUNET_IXCMODULE_INPUT_OBJ) {
            first_type_object_select = VISUNET_IXCMODULE_INPUT_OBJ;
            first_num_object_select = num_object_select;
            first_num_object2_select = num_object2_select;
            editor_warn() << "first_type_object_select= VISUNET_IXCMODULE_INPUT_OBJ;" << std::endl;
        } else if (type_object_select == VISUNET_IXCMODULE_OUTPUT_OBJ) {
            first_type_object_select = VISUNET_IXCMODULE_OUTPUT_OBJ;
            first_num_object_select = num_object_select;
            first_num_object2_select = num_object2_select;
            editor_warn() << "first_type_object_select= VISUNET_IXCMODULE_OUTPUT_OBJ;" << std::endl;
        } else if (type_object_select == VISUNET_NO_OBJ) {
            press_opened_dialog = true;
            black_box b;
            if (editor_dialogs().black_box_form(associate_forms, *this, -1, &b) == 1) {
                // The raw window position, deliberately: neither the drawing
                // area's origin nor the slides are taken off.
                b.change_ma_posx(x / scale);
                b.change_ma_posy(y / scale);
                add_fin_black_box(b);
                redraw_all();
            }
        }
        break;
    case VISUNET_MODE_EDIT:
        if (type_object_select == VISUNET_IXCMODULE_OBJ && box_or_null(num_object_select)) {
            press_opened_dialog = true;
            const int i = num_object_select;
            black_box b;
            if (editor_dialogs().black_box_form(associate_forms, *this, i, &b) == 1 && box_or_null(i)) {
                b.change_ma_posx(table_bbox[i].ma_posx());
                b.change_ma_posy(table_bbox[i].ma_posy());
                table_bbox[i] = b;
                redraw_all();
            }
        }
        break;
    case VISUNET_MODE_DELETE:
        if (type_object_select == VISUNET_IXCMODULE_OBJ)
            sup_black_box(num_object_select);
        else if (type_object_select == VISUNET_TRANSITION_OBJ)
            sup_transition(num_object_select);
        type_object_select = VISUNET_NO_OBJ;
        xforms_redraw(scale);
        break;
    default:
        break;
    }
}

void visu_net::drag(int x, int y, int, int)
{
    if (internal_mode == VISUNET_MODE_INSERT) {
        detect_object(x, y);
        return;
    }
    if (internal_mode != VISUNET_MODE_MOVE)
        return;
    // The object selected when the drag began follows the pointer.
    if (type_object_select == VISUNET_IXCMODULE_OBJ && box_or_null(num_object_select)) {
        ixcmodule_xforms_undraw(num_object_select);
        ixcmodule_xforms_move(num_object_select, x, y);
        ixcmodule_xforms_draw(num_object_select, VISUNET_RED);
    } else if (type_object_select == VISUNET_TRANSITION_OBJ && num_object_select >= 0 &&
               num_object_select < nbr_transitions()) {
        trans_xforms_undraw(num_object_select, this);
        trans_xforms_move(num_object_select, x - scale / 2, y - scale / 2);
        trans_xforms_draw(num_object_select, this, VISUNET_RED);
    }
}

void visu_net::connect(int up_box, int up_output, int down_box, int down_input)
{
    std::string message;
    if (!correct_type_interconnection(up_box, up_output, down_box, down_input, message)) {
        editor_dialogs().message("Bad data type between input and output!\n FORBIDDEN connection ...\n" + message);
        return;
    }
    bix_tpen_lien l(up_box, up_output, down_box, down_input);
    l.aligne_points(this);
    add_fin_transition(l);
    redraw_all();
}

void visu_net::release(int x, int y)
{
    if (press_opened_dialog) {
        press_opened_dialog = false;
        return;
    }
    switch (internal_mode) {
    case VISUNET_MODE_INSERT:
        detect_object(x, y);
        if (type_object_select == VISUNET_IXCMODULE_INPUT_OBJ) {
            if (first_type_object_select == VISUNET_IXCMODULE_OUTPUT_OBJ) {
                connect(first_num_object_select, first_num_object2_select, num_object_select, num_object2_select);
            } else if (first_type_object_select == VISUNET_IXCMODULE_INPUT_OBJ) {
                editor_dialogs().message("Input to Input connection FORBIDDEN!");
            } else {
                editor_warn() << "bad connection ..." << std::endl;
            }
            first_type_object_select = VISUNET_NO_OBJ;
            editor_warn() << "first_type_object_select= VISUNET_NO_OBJ;" << std::endl;
        } else if (type_object_select == VISUNET_IXCMODULE_OUTPUT_OBJ) {
            // An output-to-output drag gets only the error-stream line: the
            // refusal box of that case is never reached. Kept as it is.
            if (first_type_object_select == VISUNET_IXCMODULE_INPUT_OBJ) {
                connect(num_object_select, num_object2_select, first_num_object_select, first_num_object2_select);
            } else {
                editor_warn() << "bad connection ..." << std::endl;
            }
            first_type_object_select = VISUNET_NO_OBJ;
            editor_warn() << "first_type_object_select= VISUNET_NO_OBJ;" << std::endl;
        } else if (type_object_select == VISUNET_NO_OBJ && first_type_object_select == VISUNET_NO_OBJ) {
            const sheet_view v = vue();
            black_box b("inst" + std::to_string(internal_num_bb_max), v.snapped_x(x), v.snapped_y(y),
                        BBOX_DEFAULT, -1);
            add_fin_black_box(b);
            ++internal_num_bb_max;
            redraw_all();
        }
        break;
    case VISUNET_MODE_MOVE:
    case VISUNET_MODE_DELETE:
        xforms_draw();
        break;
    default:
        break;
    }
}

void visu_net::ixcmodule_xforms_move(int i, int x, int y)
{
    if (!box_or_null(i))
        return;
    black_box& b = table_bbox[i];
    const double ox = b.ma_posx();
    const double oy = b.ma_posy();
    const sheet_view v = vue();
    b.change_ma_posx(v.snapped_x(x));
    b.change_ma_posy(v.snapped_y(y));
    for (bix_tpen_lien& l : table_liens) {
        const bool up = l.mon_ident_ixcmodule_amont() == i;
        const bool down = l.mon_ident_ixcmodule_aval() == i;
        // A loop on the box keeps its shape; other links are routed anew.
        if (up && down)
            l.translation_points(b.ma_posx() - ox, b.ma_posy() - oy);
        else if (up || down)
            l.aligne_points(this);
    }
}

void visu_net::trans_xforms_move(int k, int x, int y)
{
    if (k < 0 || k >= nbr_transitions())
        return;
    bix_tpen_lien& l = table_liens[k];
    const sheet_view v = vue();
    const double cx = v.model_x(x);
    const double cy = v.model_y(y);
    const int n = l.nb_points();
    if (n == 0)
        return;
    if (n != 2 && n != 4) {
        editor_warn() << "warning: in visu_net::link_xforms_move(): incorrect line with " << n << "points "
                      << std::endl;
        return;
    }
    // The segment whose midpoint is nearest the cursor (the earlier on a tie).
    const std::vector<double>& p = l.liste_positions();
    int segment = 0;
    double best = std::numeric_limits<double>::infinity();
    for (int j = 0; j + 1 < n; ++j) {
        const double mx = (p[2 * j] + p[2 * j + 2]) / 2.0;
        const double my = (p[2 * j + 1] + p[2 * j + 3]) / 2.0;
        const double d = std::hypot(mx - cx, my - cy);
        if (d < best) {
            best = d;
            segment = j;
        }
    }
    // Segments alternate vertical and horizontal.
    switch (segment) {
    case 0:
        l.modif_xcoords_point(0, cx);
        l.modif_xcoords_point(1, cx);
        break;
    case 1:
        l.modif_ycoords_point(1, cy);
        l.modif_ycoords_point(2, cy);
        break;
    case 2:
        l.modif_xcoords_point(2, cx);
        l.modif_xcoords_point(3, cx);
        break;
    default:
        editor_warn() << "internal error in trans_xforms_move()" << std::endl;
        break;
    }
}
