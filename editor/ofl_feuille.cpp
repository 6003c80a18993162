#include "ofl_feuille.h"

#include "editor_warn.h"
#include "visu_net.h"

#include <FL/Fl.H>

#include <iostream>

OFL_feuille::OFL_feuille(int x, int y, int w, int h) : Fl_Widget(x, y, w, h), x_origin(x), y_origin(y) {}

void OFL_feuille::draw()
{
    if (pg)
        pg->xforms_draw();
}

void OFL_feuille::desactivate()
{
    mouse_activated = 0;
    ancx = 0;
    ancy = 0;
}

int OFL_feuille::handle(int event)
{
    if (!pg) {
        editor_warn() << "ERROR in OFL_circuit::handle(): no editor linked !" << std::endl;
        return 0;
    }
    if (event == OFL_EVENT_REDRAW) {
        pg->xforms_draw();
        return 0;
    }
    if (!mouse_activated)
        return 0;
    const int x = Fl::event_x();
    const int y = Fl::event_y();
    int claimed = 0;
    switch (event) {
    case FL_PUSH:
        pg->push(x, y);
        claimed = 1;
        break;
    case FL_RELEASE:
        pg->release(x, y);
        break;
    case FL_ENTER:
        // Not claimed: the toolkit then keeps sending it as the pointer moves.
        pg->motion(x, y);
        break;
    case FL_DRAG:
        pg->drag(x, y, x - ancx, y - ancy);
        break;
    default:
        break;
    }
    ancx = x;
    ancy = y;
    return claimed;
}
