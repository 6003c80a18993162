// Drawing the project on the sheet: boxes with their ports and names, links,
// erasing and highlighting.

#include "visu_net.h"

#include "ofl_feuille.h"

#include <FL/Enumerations.H>
#include <FL/Fl_Window.H>

#include <optional>

namespace {

// Label font: Times.
const int label_font = FL_TIMES;
// Arrow heads of ports, as a fraction of the port's length.
const double port_arrow_factor = 0.3;

std::string declaration_text(const bix_declaration_variables& v)
{
    if (v.mon_type().empty() || v.mon_type() == "pure")
        return v.mon_nom();
    return v.mon_nom() + ": " + v.mon_type();
}

}  // namespace

class visu_net::drawing {
public:
    explicit drawing(visu_net& view)
        : v(view), ok(view.internal_ob && view.associate_forms && view.associate_forms->shown())
    {
        if (!ok)
            return;
        if (v.drawing_depth++ == 0)
            v.associate_forms->make_current();
        clip.emplace(v.vs);
    }
    ~drawing()
    {
        if (!ok)
            return;
        clip.reset();
        --v.drawing_depth;
    }
    drawing(const drawing&) = delete;
    drawing& operator=(const drawing&) = delete;

    visu_net& v;
    const bool ok;

private:
    std::optional<OFL_vision_sheet::clip_scope> clip;
};

void visu_net::xforms_redraw(int s)
{
    scale = s;
    xforms_draw();
}

void visu_net::xforms_draw()
{
    if (!internal_ob)
        return;
    vs.resize(internal_ob->x(), internal_ob->y(), internal_ob->w(), internal_ob->h());
    const drawing d(*this);
    if (!d.ok)
        return;
    vs.ofl_rectf(internal_ob->x(), internal_ob->y(), internal_ob->w(), internal_ob->h(), background_color);
    const int boxes = nbr_black_box();
    for (int i = 0; i < boxes; ++i)
        ixcmodule_xforms_draw(i, VISUNET_WHITE);
    const int links = nbr_transitions();
    for (int k = 0; k < links; ++k)
        trans_xforms_draw(k, this, VISUNET_BLACK);
}

void visu_net::ixcmodule_xforms_draw(int i, int color)
{
    const black_box* b = box_or_null(i);
    // A default box (negative ident) is not drawn until it gets a kind.
    if (!b || b->mon_ident() < 0)
        return;
    const drawing d(*this);
    if (!d.ok)
        return;
    const pixel_rect frame = box_frame(*this, i, vue());
    vs.ofl_rectbound(frame.left, frame.top, frame.width, frame.height, color);
    draw_box_contents(i, frame);
}

void visu_net::draw_box_contents(int i, const pixel_rect& frame)
{
    const black_box& b = table_bbox[i];
    const sheet_view v = vue();
    const int fs = scale2font_size(scale);
    int inputs = 0;
    int outputs = 0;
    box_port_counts(*this, i, &inputs, &outputs);
    for (int k = 0; k < inputs; ++k)
        ixcinput_xforms_draw(i, k, VISUNET_BLACK);
    for (int k = 0; k < outputs; ++k)
        ixcoutput_xforms_draw(i, k, VISUNET_BLACK);

    // Labels start a quarter of the font size inside the edge their port
    // arrow meets; right-aligned ones end as far inside the other edge.
    const double inner_left = frame.left + fs / 4.0;
    const double inner_right = frame.left + frame.width - fs / 4.0;
    const double centre_x = frame.left + frame.width / 2.0;
    const double centre_y = v.pixel_y(b.ma_posy());
    auto label = [&](double x, double y, const std::string& text, ofl_align align) {
        vs.ofl_drw_String(x, y, text, VISUNET_BLACK, label_font, fs, align);
    };

    switch (b.mon_tpe()) {
    case BBOX_INSTANCE: {
        const bix_declaration_ixcmodule* run = run_or_null(b.mon_ident());
        // The instance's name above its frame, as in the drawing export; the
        // run's module name inside.
        label(centre_x, frame.top - 0.6 * fs, b.un_nom(), OFL_ALIGN_CENTER);
        label(centre_x, centre_y, run ? run->nom_module() : std::string(), OFL_ALIGN_CENTER);
        for (int k = 0; k < inputs; ++k)
            label(inner_left, port_row(*this, i, k, v), run->nom_entree(k), OFL_ALIGN_LEFT);
        for (int k = 0; k < outputs; ++k)
            label(inner_right, port_row(*this, i, k, v), run->nom_sortie(k), OFL_ALIGN_RIGHT);
        break;
    }
    case BBOX_INPUT:
        if (b.mon_ident() < nbr_inputs())
            label(inner_right, port_row(*this, i, 0, v), declaration_text(table_inputs[b.mon_ident()]),
                  OFL_ALIGN_RIGHT);
        break;
    case BBOX_OUTPUT:
        if (b.mon_ident() < nbr_outputs())
            label(inner_left, port_row(*this, i, 0, v), declaration_text(table_outputs[b.mon_ident()]),
                  OFL_ALIGN_LEFT);
        break;
    case BBOX_CONSTANT:
        label(inner_right, port_row(*this, i, 0, v), b.mon_ident() == 0 ? "Always Absent" : "Always Present",
              OFL_ALIGN_RIGHT);
        break;
    case BBOX_DONTCARE:
        label(inner_left, port_row(*this, i, 0, v), "-----", OFL_ALIGN_LEFT);
        break;
    default:
        break;
    }
}

void visu_net::draw_port(double x1, double x2, double y, int color)
{
    const drawing d(*this);
    if (d.ok)
        vs.ofl_drw_arrow_line(x1, y, x2, y, color, port_arrow_factor, 1);
}

void visu_net::ixcinput_xforms_draw(int i, int port, int color)
{
    double mx = 0.0;
    double my = 0.0;
    if (!position_input(i, port, &mx, &my))
        return;
    // From the port, half a scale left of the frame, into the box.
    const sheet_view v = vue();
    draw_port(v.pixel_x(mx), v.pixel_x(mx) + scale / 2.0, v.pixel_y(my), color);
}

void visu_net::ixcoutput_xforms_draw(int i, int port, int color)
{
    double mx = 0.0;
    double my = 0.0;
    if (!position_output(i, port, &mx, &my))
        return;
    // From the frame out to the port, half a scale right of it.
    const sheet_view v = vue();
    draw_port(v.pixel_x(mx) - scale / 2.0, v.pixel_x(mx), v.pixel_y(my), color);
}

void visu_net::draw_polyline(const std::vector<pixel_point>& line, int color)
{
    for (std::size_t j = 0; j + 1 < line.size(); ++j)
        vs.ofl_line(line[j].x, line[j].y, line[j + 1].x, line[j + 1].y, color);
}

void visu_net::trans_xforms_draw(int k, const bix_tpen_fichier* model, int color)
{
    const drawing d(*this);
    if (!model || !d.ok)
        return;
    draw_polyline(link_drawn_line(*model, k, vue()), color);
}

void visu_net::ixcmodule_xforms_undraw(int i)
{
    const drawing d(*this);
    if (!box_or_null(i) || !d.ok)
        return;
    // The frame, the port arrows half a scale on each side, the name above,
    // a pixel around.
    const pixel_rect frame = box_frame(*this, i, vue());
    const int name_height = scale2font_size(scale) * 2;
    vs.ofl_rectf(frame.left - scale / 2 - 1, frame.top - name_height - 1, frame.width + 2 * (scale / 2) + 3,
                 frame.height + name_height + 2, background_color);
}

void visu_net::trans_xforms_undraw(int k, const bix_tpen_fichier* model)
{
    trans_xforms_draw(k, model, background_color);
}

int visu_net::ixcmodule_xforms_highlight(int i, int x, int y)
{
    if (!box_hit(*this, i, vue(), x, y))
        return 0;
    ixcmodule_xforms_draw(i, VISUNET_RED);
    return 1;
}

int visu_net::ixcinput_xforms_highlight(int i, int port, int x, int y)
{
    if (!input_port_hit(*this, i, port, vue(), x, y))
        return 0;
    ixcinput_xforms_draw(i, port, VISUNET_RED);
    return 1;
}

int visu_net::ixcoutput_xforms_highlight(int i, int port, int x, int y)
{
    if (!output_port_hit(*this, i, port, vue(), x, y))
        return 0;
    ixcoutput_xforms_draw(i, port, VISUNET_RED);
    return 1;
}

int visu_net::trans_xforms_highlight(int k, int x, int y)
{
    if (!link_hit(*this, k, vue(), x, y))
        return 0;
    trans_xforms_draw(k, this, VISUNET_RED);
    return 1;
}

void visu_net::xforms_unhighlight()
{
    switch (type_object_select) {
    case VISUNET_IXCMODULE_OBJ:
        ixcmodule_xforms_draw(num_object_select, VISUNET_WHITE);
        break;
    case VISUNET_IXCMODULE_INPUT_OBJ:
        ixcinput_xforms_draw(num_object_select, num_object2_select, VISUNET_BLACK);
        break;
    case VISUNET_IXCMODULE_OUTPUT_OBJ:
        ixcoutput_xforms_draw(num_object_select, num_object2_select, VISUNET_BLACK);
        break;
    case VISUNET_TRANSITION_OBJ:
        trans_xforms_draw(num_object_select, this, VISUNET_BLACK);
        break;
    default:
        break;
    }
}
