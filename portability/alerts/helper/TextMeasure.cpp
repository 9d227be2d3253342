#include "portability/alerts/helper/TextMeasure.h"

#include <algorithm>
#include <limits>

namespace alerthelper {
Size textSize(GtkWidget* widget, const std::string& text, int longestLine) {
    g_autoptr(PangoLayout) layout = gtk_widget_create_pango_layout(widget, nullptr);
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    pango_layout_set_width(layout, longestLine * PANGO_SCALE);
    Size whole;
    for (size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find('\n', begin);
        const size_t length = (end == std::string::npos ? text.size() : end) - begin;
        pango_layout_set_text(layout, text.data() + begin, static_cast<int>(length));
        Size paragraph;
        pango_layout_get_size(layout, &paragraph.width, &paragraph.height);
        whole = {std::max(whole.width, PANGO_PIXELS_CEIL(paragraph.width)),
                 whole.height + PANGO_PIXELS(paragraph.height)};
    }
    return whole;
}

int averageCharacterWidth(GtkWidget* widget) {
    PangoFontMetrics* const metrics =
        pango_context_get_metrics(gtk_widget_get_pango_context(widget), nullptr, nullptr);
    const int width = std::max(pango_font_metrics_get_approximate_char_width(metrics),
                               pango_font_metrics_get_approximate_digit_width(metrics));
    pango_font_metrics_unref(metrics);
    return std::max(PANGO_PIXELS(width), 1);
}

Size smallestMonitor() {
    Size smallest = {std::numeric_limits<int>::max(), std::numeric_limits<int>::max()};
    GListModel* const monitors = gdk_display_get_monitors(gdk_display_get_default());
    for (guint index = 0; index < g_list_model_get_n_items(monitors); ++index) {
        g_autoptr(GdkMonitor) monitor = static_cast<GdkMonitor*>(g_list_model_get_item(monitors, index));
        GdkRectangle area = {};
        gdk_monitor_get_geometry(monitor, &area);
        smallest = {std::min(smallest.width, area.width), std::min(smallest.height, area.height)};
    }
    return smallest;
}

}  // namespace alerthelper
