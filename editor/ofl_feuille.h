#ifndef EDITOR_OFL_FEUILLE_H
#define EDITOR_OFL_FEUILLE_H

// The drawing widget of the main window: draws its view and hands the
// mouse to it.

#include <FL/Fl_Widget.H>

class visu_net;

// A custom event number that asks the widget to redraw its view.
enum { OFL_EVENT_REDRAW = 100 };

class OFL_feuille : public Fl_Widget {
public:
    OFL_feuille(int x, int y, int w, int h);

    void draw() override;
    int handle(int event) override;
    ~OFL_feuille() override = default;

    // While deactivated, only the redraw event is served.
    void desactivate();
    void activate_mouse() { mouse_activated = 1; }

    int mouse_activated = 1;
    int x_origin = 0;
    int y_origin = 0;
    int ancx = 0;
    int ancy = 0;
    int delta_x = 0;
    int delta_y = 0;
    visu_net* pg = nullptr;
};

#endif
